#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

#include "mail/open_message.h"
#include "present/link_command.h"
#include "present/window/browser_host.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

class MessageListPages;
class PageQueue;
class PageRequest;
class PageRows;
class PageSplit;
enum class OpenMode;

/// What a user does with the messages on a folder's page: they are opened, answered, marked, taken
/// away, and the reading pane follows the current one.
class PageMessages : public QObject {
  Q_OBJECT

 public:
  /// Questions stand before `window`.
  PageMessages(Context& context, MessageListPages& pages, const PageRequest& request,
               PageQueue& queue, PageRows& rows, PageSplit& split, BrowserHost& host,
               QWidget& window);

  /// Opens the chosen messages to be read, or makes an answer to the current one.
  void Open(OpenMode mode);
  /// Does something with the chosen messages, after asking where that is due.
  void Act(MessageAction action);
  /// Takes the correspondents of the chosen messages into an address book.
  void AddToBook();
  void Print();
  /// Has the program around do something with the current message, if there is one.
  void Ask(void (MessageHost::*command)(const QString&));
  /// Goes to the next unopened message of the folder, whichever page it is on.
  void GoToUnopened();
  /// Goes to a message of the folder once what was asked before is done.
  void GoTo(const QString& message);
  /// Goes to the first of messages that the page may not show yet, by making another one; several
  /// are chosen there.
  void GoToReturned(const QStringList& messages);

  /// A link to a message was clicked on the page.
  void Follow(const LinkCommand& command);
  /// See `LinkPage::RowTold`.
  void Told(const QString& what, const QString& message);
  /// How many messages the user has chosen one by one.
  int CountChosen() const { return chosen_; }
  void SetChosen(int count);

 Q_SIGNALS:
  /// More or fewer messages are chosen.
  void ChosenChanged();
  /// Messages have left the folder.
  void Gone(const QStringList& messages);
  /// A message stands on that page of the folder, and these are to be chosen there.
  void PageWanted(int page, const QString& message, const QStringList& chosen);

 private:
  bool HasAny(bool any);
  void WithCurrent(const std::function<void(const QString&)>& act);
  void OpenInWindow(const LinkCommand& command);
  void OpenEach(const QStringList& messages);
  void GoToUnopenedAfter(const QString& message);
  void GoToRow(const QString& message);
  int PageOf(const QString& message);
  bool TakesAway(MessageAction action) const;
  void ActOn(const QStringList& messages, MessageAction action, const QString& folder);

  Context& context_;
  MessageListPages& pages_;
  const PageRequest& request_;
  PageQueue& queue_;
  PageRows& rows_;
  PageSplit& split_;
  BrowserHost& host_;
  QWidget& window_;
  int chosen_ = 0;
};

}  // namespace vorn
