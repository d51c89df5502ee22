#pragma once

#include <QObject>
#include <QPointer>

#include "frame/window/commands/message_actions.h"
#include "frame/window/notices/status_bar.h"
#include "storage/base/serial_id.h"

namespace vorn {

class BrowserWindow;
class FolderPanes;

/// What is done with messages of the pages, in the main window: the status bar offers to take it
/// back, and the page in use goes along.
class PageActions : public QObject {
  Q_OBJECT

 public:
  PageActions(Context& context, QWidget& window, MessageHost& host, FolderPanes& panes,
              MainStatusBar& status);

  /// See `MessageActions`.
  SerialIds Act(MessageAction action, const SerialIds& messages, const SerialId& folder) {
    return actions_.Act(action, messages, folder);
  }
  void EmptyDustBin() { actions_.EmptyDustBin(); }
  /// Offers to take back what was done otherwise.
  void Offer(const QString& done, std::function<void()> undo,
             OfferLasts lasts = OfferLasts::WhileAtIt);
  /// A message of the page in use was dropped on a folder of the tree. One that belongs to a choice
  /// of several brings the others along.
  void Drop(const SerialId& message, const SerialId& folder);

 private:
  void ConnectActions();
  void TakeBack();
  QString Place() const;

  FolderPanes& panes_;
  MainStatusBar& status_;
  MessageActions actions_;
  QString offeredAt_;                  // the folder, and what it was searched for
  QPointer<BrowserWindow> takesBack_;  // the list for which that is done just now
};

}  // namespace vorn
