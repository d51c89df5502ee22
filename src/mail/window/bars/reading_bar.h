#pragma once

#include "kit/window/notice_bar.h"
#include "mail/message_document.h"

namespace vorn {

/// Has a message read in another code than its own, and is the line above it that says so.
class ReadingBar : public NoticeBar {
  Q_OBJECT

 public:
  ReadingBar(Context& context, MessageDocument& document);

  /// Says in which code the message is read, if it is another one.
  void Show();
  /// The user picks the code in which the message is written, or read from now on.
  void Pick(CharsetChoice charset);
  /// Lets the user choose any code there is, without a trace in what is stored.
  void Choose();

 Q_SIGNALS:
  void Edited();
  /// The message is to be opened anew, as it is shown where it has been erased; the argument is
  /// that of `MessageDocument::Open`.
  void AnewWanted(bool applyStoredCharset);

 private:
  ReadingBar(Context& context, MessageDocument& document, QPushButton* asDeclared);

  Context& context_;
  MessageDocument& document_;
};

}  // namespace vorn
