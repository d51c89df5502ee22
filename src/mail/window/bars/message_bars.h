#pragma once

#include <QWidget>
#include <utility>

#include "kit/window/notice_bar.h"
#include "mail/message_document.h"

namespace vorn {

class CalendarBar;
class DoubtBar;
class MessageHost;
class ReadingBar;

/// The lines above the message of a window that say something of it.
class MessageBars : public QWidget {
 public:
  MessageBars(Context& context, MessageHost& host, MessageDocument& document);

  /// Shows what the document says as it was opened; not how it stands with its sending.
  void Show(const OpenedMessage& opened);
  /// Says that a server refused what waits or is being mended, and why, or that no account can send
  /// what is written; and `ShowErased`. Returns whether no account could until now, and there is
  /// one.
  bool ShowStanding();
  /// Whether a server refused what waits, as it stood when that was shown last.
  bool IsRefused() const { return isRefused_ && document_.IsWaiting(); }
  /// Looks whether the message has been erased since it was opened, and says so.
  void ShowErased();
  bool SaysErased() const { return isErased_; }
  /// Says that what is written cannot be kept for the case of a crash, and why; nothing where it
  /// was.
  void ShowKept(const Result<>& kept);
  /// The button that has it edited.
  QPushButton& Mend() const { return *refused_->Button(); }
  /// The one that makes an account, seen where none can send what is written.
  QPushButton& MakeAccount() const { return *account_->Button(); }
  /// Whether the user has asked for an account from here; forgotten by asking.
  bool HasAskedForAccount() { return std::exchange(asksForAccount_, false); }
  DoubtBar& Doubt() const { return *doubt_; }
  CalendarBar& Calendar() const { return *calendar_; }
  ReadingBar& Reading() const { return *reading_; }

 private:
  NoticeBar* BuildRefusal();
  NoticeBar* BuildAccountNotice(MessageHost& host);

  Context& context_;
  MessageDocument& document_;
  bool asksForAccount_ = false;
  bool lacksAccount_ = false;  // none can send what is written
  bool isRefused_ = false;     // what is unsent, by a server
  bool isErased_ = false;
  NoticeBar* erased_;
  NoticeBar* unkept_;
  DoubtBar* doubt_;
  NoticeBar* refused_;
  NoticeBar* account_;
  CalendarBar* calendar_;
  NoticeBar* signed_;
  ReadingBar* reading_;
};

}  // namespace vorn
