// What the main window does with messages on the folders' pages.

#include <algorithm>

#include "frame/window/browser_area.h"
#include "frame/window/from_message.h"
#include "frame/window/parent_window.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "present/neighbour_message.h"
#include "present/window/browser_window.h"
#include "present/window/layout_window.h"
#include "present/window/shown_folder.h"
#include "storage/condition_limit.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kNeighbourMs = 2000;  // the window stands still meanwhile
constexpr int kToldMs = 10000;

}  // namespace

// A message that belongs to a choice of several brings the others along.
void ParentWindow::DropMessage(const QString& message, const QString& folder) {
  BrowserWindow* browser = area_->Active();
  if (browser == nullptr) return;
  const QString from = browser->Tag();
  const QPointer<BrowserWindow> shown(browser);
  browser->Folder().ChosenMessages([this, message, folder, from, shown](const QStringList& chosen) {
    const QStringList messages = chosen.contains(message) ? chosen : QStringList{message};
    // A failure is told to the user, which must not happen inside the engine's answer.
    QTimer::singleShot(0, this, [this, messages, folder, from, shown] {
      const QStringList gone = actions_.Drop(messages, folder, from);
      if (shown != nullptr && shown->Tag() == from) shown->Folder().MessagesGone(gone);
    });
  });
}

// The folder whose node is chosen in the tree, or else the one whose page was used last.
QString ParentWindow::CurrentFolder() const {
  if (tvConsole_->hasFocus() && tvConsole_->CurrentTag() == object_type::kFolder) {
    return tvConsole_->CurrentKey();
  }
  const BrowserWindow* browser = area_->Active();
  return browser == nullptr ? QString() : browser->Tag();
}

void ParentWindow::EditLayout() {
  const QString folder = CurrentFolder();
  if (folder.isEmpty()) return;
  LayoutWindow window(context_, pages_, profiles_, folder, this);
  if (window.exec() == QDialog::Accepted) MessageStored();
}

QString ParentWindow::NeighbourMessage(const QString& serialId, int step) {
  BrowserWindow* browser = area_->Active();
  if (browser == nullptr) return {};
  const ConditionLimit brief(kNeighbourMs);
  const Result<QString> found =
      vorn::NeighbourMessage(context_, browser->Tag(), browser->Folder().Search(), serialId,
                             Settings(context_).IsNewestFirst() ? -step : step);
  if (!found && brief.IsReached()) sbStatus_->showMessage(found.Error().text);
  const QString neighbour = found.ValueOr({});
  // The page goes along: its keys act on the message that was read last.
  if (!neighbour.isEmpty()) browser->Folder().GoToMessage(neighbour);
  return neighbour;
}

void ParentWindow::MakeRule(const QString& serialId, bool stops) {
  const auto request = RuleLikeMessage(context_, *this, serialId, stops);
  if (request) queue_.PostDialogRequest(*request);
}

void ParentWindow::AddToBook(const QStringList& serialIds) {
  const auto addition = AddCorrespondents(context_, *this, serialIds, [this](const QString& book) {
    return std::any_of(windows_.begin(), windows_.end(),
                       [&](const RequestWindow* window) { return window->Tag() == book; });
  });
  if (!addition) return;
  tvConsole_->RefreshNode(addition->book);
  Tell(addition->told);
}

void ParentWindow::Tell(const QString& sentence) {
  sbStatus_->showMessage(sentence, kToldMs);
}

BrowserWindow* ParentWindow::NamedWindow(const QString& name, const BrowserWindow* asking) {
  return area_->Named(name, asking);
}

}  // namespace vorn
