#include "frame/window/panes/folder_panes.h"

#include <QHeaderView>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <utility>

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
constexpr int kLeastPageWidth = 280;
constexpr int kPageWidthBesideTree = 440;  // with the boxes above a page and their words
constexpr int kNameDepth = 3;              // of folders, with the arrows before them
constexpr int kNameLetters = 5;            // Japanese ones

// With which names of folders stay readable beside the numbers, in the last column.
int LeastWidth(const ConsoleTree& tree) {
  const QScrollBar& bar = *tree.verticalScrollBar();
  return kNameDepth * tree.indentation() + tree.iconSize().width() +
         kNameLetters * tree.fontMetrics().horizontalAdvance(u'あ') +
         tree.header()->sectionSize(tree.columnCount() - 1) + 2 * tree.frameWidth() +
         (bar.maximum() > 0 ? bar.sizeHint().width() : 0);
}

}  // namespace

FolderPanes::FolderPanes(Context& context)
    : context_(context),
      tvConsole_(new ConsoleTree(context)),
      area_(new BrowserArea(context)),
      treeWidth_(kTreeWidth) {
  setObjectName(QStringLiteral("splitter"));
  addWidget(tvConsole_);
  addWidget(area_);
  setStretchFactor(1, 1);
  setChildrenCollapsible(false);
  area_->setMinimumWidth(kLeastPageWidth);
  new KeyFrame(*tvConsole_);
  connect(area_, &BrowserArea::ActiveChanged, this, &FolderPanes::FollowActivePage);
  // Not in the midst of it, for the tree may go.
  connect(
      tvConsole_->header(), &QHeaderView::sectionResized, this,
      [this](int column) {
        if (isVisible() && column == tvConsole_->columnCount() - 1) Divide();
      },
      Qt::QueuedConnection);
  connect(this, &QSplitter::splitterMoved, this, [this] { treeWidth_ = sizes().first(); });
}

// It is what commands act on.
void FolderPanes::FollowActivePage() {
  QWidget* page = area_->currentSubWindow();
  if (page != nullptr && page_ != page) ShowPage();
  page_ = page;
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
  treeWidth_ = Placement(*PlacementBag(context_, window)).TreeWidth(kTreeWidth);
  setSizes({treeWidth_, qMax(1, width - treeWidth_)});
}

void FolderPanes::KeepWidths(const QString& window) const {
  Placement::SetTreeWidth(*PlacementBag(context_, window), treeWidth_);
}

void FolderPanes::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  Divide();
}

// In a window that is made small the tree gives way before the page, and comes back as it was.
void FolderPanes::Divide() {
  const int least = LeastWidth(*tvConsole_);
  tvConsole_->setMinimumWidth(least);
  const bool hasRoom = width() >= least + handleWidth() + kPageWidthBesideTree;
  if (std::exchange(hasRoom_, hasRoom) != hasRoom) {
    isTreeInFront_ = false;
    ShowInFront();
    Q_EMIT RoomChanged(hasRoom_);
  }
  if (hasRoom_) setSizes({treeWidth_, qMax(1, width() - handleWidth() - treeWidth_)});
}

void FolderPanes::ShowInFront() {
  const bool hadKeys = tvConsole_->hasFocus();
  area_->setVisible(hasRoom_ || !isTreeInFront_);
  tvConsole_->setVisible(hasRoom_ || isTreeInFront_);
  if (hadKeys && tvConsole_->isHidden()) GoToPage();
}

void FolderPanes::ShowPage() {
  if (std::exchange(isTreeInFront_, false)) ShowInFront();
}

void FolderPanes::TurnOver() {
  isTreeInFront_ ? GoToPage() : GoToTree();
}

void FolderPanes::GoToTree() {
  if (!hasRoom_ && !std::exchange(isTreeInFront_, true)) ShowInFront();
  tvConsole_->setFocus();
}

void FolderPanes::GoToPage() {
  ShowPage();
  if (BrowserWindow* browser = area_->Active()) browser->setFocus();
}

QSize FolderPanes::minimumSizeHint() const {
  return {kLeastPageWidth, QSplitter::minimumSizeHint().height()};
}

}  // namespace vorn
