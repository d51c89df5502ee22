#pragma once

#include <QWidget>

#include "mail/message_document.h"

namespace vorn {

class CalendarBar;
class DoubtBar;
class NoticeBar;
class ReadingBar;

/// The lines above the message of a window that say something of it.
class MessageBars : public QWidget {
 public:
  MessageBars(Context& context, MessageDocument& document);

  /// Shows what the document says as it was opened; not whether its sending is doubtful.
  void Show(const OpenedMessage& opened);
  DoubtBar& Doubt() const { return *doubt_; }
  CalendarBar& Calendar() const { return *calendar_; }
  ReadingBar& Reading() const { return *reading_; }

 private:
  const MessageDocument& document_;
  DoubtBar* doubt_;
  CalendarBar* calendar_;
  NoticeBar* signed_;
  ReadingBar* reading_;
};

}  // namespace vorn
