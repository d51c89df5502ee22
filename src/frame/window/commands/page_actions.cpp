#include "frame/window/commands/page_actions.h"

#include <QTimer>

#include "frame/window/panes/browser_area.h"
#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/folder_panes.h"
#include "present/window/browser_window.h"
#include "present/window/folder/shown_folder.h"

namespace vorn {

PageActions::PageActions(Context& context, QWidget& window, MessageHost& host, FolderPanes& panes,
                         MainStatusBar& status)
    : panes_(panes), status_(status), actions_(context, window, host) {
  ConnectActions();
  connect(&status, &MainStatusBar::UndoWanted, this, &PageActions::TakeBack);
  // Another folder, or a search, is another matter.
  connect(&panes.Area(), &BrowserArea::ActiveChanged, this, [this] {
    if (Place() != offeredAt_) status_.EndOffer();
  });
}

QString PageActions::Place() const {
  const BrowserWindow* browser = panes_.Area().Active();
  return browser == nullptr ? QString()
                            : browser->Tag().Text() + u' ' + browser->Folder().Search().text;
}

void PageActions::ConnectActions() {
  actions_.OnDone(
      [this](const QString& done, std::function<void()> undo) { Offer(done, std::move(undo)); });
  // The next key means it, in the list where it was taken back.
  actions_.OnReturned([this](const SerialIds& messages) {
    if (takesBack_ != nullptr) takesBack_->Folder().GoToReturned(messages);
  });
  actions_.OnDeleted([this](const QString& done) {
    status_.ForgetSteps();
    status_.ShowForAWhile(done);
  });
  actions_.OnFolderMade([this](const SerialId& folder) { panes_.Tree().Nodes().Refresh(folder); });
}

void PageActions::Offer(const QString& done, std::function<void()> undo, OfferLasts lasts) {
  offeredAt_ = Place();
  status_.OfferUndo(done, std::move(undo), lasts);
}

// After what was asked of the page before, whose answer comes later.
void PageActions::TakeBack() {
  offeredAt_ = Place();
  BrowserWindow* browser = panes_.Area().Active();
  if (browser == nullptr) return status_.TakeBack();
  browser->Folder().AfterCommands([this, browser] {
    takesBack_ = browser;
    status_.TakeBack();
    takesBack_.clear();
  });
}

void PageActions::Drop(const SerialId& message, const SerialId& folder) {
  BrowserWindow* browser = panes_.Area().Active();
  if (browser == nullptr) return;
  const SerialId from = browser->Tag();
  const QPointer<BrowserWindow> shown(browser);
  browser->Folder().ChosenMessages([this, message, folder, from, shown](const SerialIds& chosen) {
    const SerialIds messages = chosen.contains(message) ? chosen : SerialIds{message};
    // A failure is told to the user, which must not happen inside the engine's answer.
    QTimer::singleShot(0, this, [this, messages, folder, from, shown] {
      const bool isOfAll = shown != nullptr && shown->Folder().Search().isEverywhere;
      const SerialIds gone = actions_.Drop(messages, folder, isOfAll ? SerialId() : from);
      if (shown != nullptr && shown->Tag() == from) shown->Folder().MessagesGone(gone);
    });
  });
}

}  // namespace vorn
