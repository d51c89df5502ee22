#include "frame/window/panes/folder_panes.h"

#include "frame/window/panes/browser_area.h"
#include "frame/window/panes/console_tree.h"
#include "kit/window/key_frame.h"
#include "objects/object_types.h"
#include "objects/placement.h"
#include "present/window/browser_window.h"
#include "storage/window/control_state.h"

namespace vorn {
namespace {

constexpr int kTreeWidth = 210;
constexpr int kLeastTreeWidth = 140;

}  // namespace

FolderPanes::FolderPanes(Context& context)
    : context_(context), tvConsole_(new ConsoleTree(context)), area_(new BrowserArea(context)) {
  setObjectName(QStringLiteral("splitter"));
  addWidget(tvConsole_);
  addWidget(area_);
  setStretchFactor(1, 1);
  setChildrenCollapsible(false);
  tvConsole_->setMinimumWidth(kLeastTreeWidth);  // names stay readable in a window made small
  new KeyFrame(*tvConsole_);
  connect(area_, &BrowserArea::ActiveChanged, this, &FolderPanes::FollowActivePage);
}

// It is what commands act on.
void FolderPanes::FollowActivePage() {
  const BrowserWindow* browser = area_->Active();
  const SerialId folder = browser == nullptr ? SerialId() : browser->Tag();
  if (!folder.IsEmpty()) tvConsole_->SelectNode(folder);
}

SerialId FolderPanes::CurrentFolder() const {
  if (tvConsole_->hasFocus() && tvConsole_->CurrentTag() == object_type::kFolder) {
    return tvConsole_->CurrentKey();
  }
  const BrowserWindow* browser = area_->Active();
  return browser == nullptr ? SerialId() : browser->Tag();
}

bool FolderPanes::Refresh(const SerialId& serialId) {
  const bool wasThere = !tvConsole_->Nodes().Text(serialId).isEmpty();
  tvConsole_->Nodes().Refresh(serialId);
  // Other conditions have other messages, and without its folder a page has none.
  const bool isGone = wasThere && context_.Objects.Find(serialId) == nullptr;
  return area_->RefreshFolder(serialId, isGone);
}

void FolderPanes::LoadWidths(const QString& window, int width) {
  const int treeWidth = Placement(*PlacementBag(context_, window)).TreeWidth(kTreeWidth);
  setSizes({treeWidth, qMax(1, width - treeWidth)});
}

void FolderPanes::KeepWidths(const QString& window) const {
  Placement::SetTreeWidth(*PlacementBag(context_, window), sizes().value(0, kTreeWidth));
}

}  // namespace vorn
