#pragma once

#include <QWidget>

#include "mail/message_document.h"

namespace vorn {

class CalendarBar;
class DoubtBar;
class MessageHost;
class NoticeBar;
class ReadingBar;

/// The lines above the message of a window that say something of it.
class MessageBars : public QWidget {
 public:
  MessageBars(Context& context, MessageHost& host, MessageDocument& document);

  /// Shows what the document says as it was opened; not how it stands with its sending.
  void Show(const OpenedMessage& opened);
  /// Says that a server refused what waits, and why, or that no account can send what is written.
  /// Returns whether that was said until now, and there is one.
  bool ShowStanding();
  DoubtBar& Doubt() const { return *doubt_; }
  CalendarBar& Calendar() const { return *calendar_; }
  ReadingBar& Reading() const { return *reading_; }

 private:
  static NoticeBar* BuildAccountNotice(MessageHost& host);

  Context& context_;
  const MessageDocument& document_;
  DoubtBar* doubt_;
  NoticeBar* refused_;
  NoticeBar* account_;
  CalendarBar* calendar_;
  NoticeBar* signed_;
  ReadingBar* reading_;
};

}  // namespace vorn
