#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

#include "mail/mail_request.h"
#include "mail/open_message.h"
#include "present/window/engine/row_news.h"
#include "present/window/page/browser_host.h"
#include "storage/base/serial_id.h"

class QWidget;

namespace vorn {

class PageSplit;
struct ShownPage;

/// What a user does with the messages on a folder's page: they are opened, answered, marked, taken
/// away, and the reading pane follows the current one.
class PageMessages : public QObject {
  Q_OBJECT

 public:
  /// Questions stand before `window`.
  PageMessages(ShownPage& page, PageSplit& split, BrowserHost& host, QWidget& window);

  /// Opens the chosen messages to be read, or makes an answer to the current one.
  void Open(OpenMode mode);
  /// Does something with the chosen messages, after asking where that is due.
  void Act(MessageAction action);
  /// Takes the correspondents of the chosen messages into an address book.
  void AddToBook();
  void Print();
  /// Has the program around do something with the current message, if there is one.
  void Ask(void (MessageHost::*command)(const SerialId&));

  /// A link to a message was clicked on the page.
  void Follow(const MailRequest& request);
  /// See `LinkPage::RowTold`.
  void Told(RowNews news, const QString& said);
  /// How many messages the user has chosen one by one.
  int CountChosen() const { return chosen_; }
  /// There is no current message any more, and none is chosen.
  void Leave();

 Q_SIGNALS:
  /// More or fewer messages are chosen.
  void ChosenChanged();
  /// Messages have left the folder.
  void Gone(const SerialIds& messages);

 private:
  void SetChosen(int count);
  bool HasAny(bool any);
  void WithCurrent(const std::function<void(const SerialId&)>& act);
  void OpenInWindow(const MailRequest& request);
  void OpenEach(const SerialIds& messages);
  bool TakesAway(MessageAction action) const;
  void ToggleOpened(const SerialId& message);
  void ActOn(const SerialIds& messages, MessageAction action, const SerialId& folder);

  ShownPage& page_;
  PageSplit& split_;
  BrowserHost& host_;
  QWidget& window_;
  int chosen_ = 0;
};

}  // namespace vorn
