#pragma once

#include <QPointer>

#include "mail/window/host/message_host.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

/// Asks whether a sender who wants a receipt gets one: once for each message, and not while the
/// user is typing. On yes the receipt is composed, in a window where the settings say so.
class ReceiptQuestion {
 public:
  /// The question stands before `window`.
  ReceiptQuestion(Context& context, MessageHost& host, QWidget& window)
      : context_(context), host_(host), window_(window) {}

  /// Where the message asks for one and the settings let it, asks as soon as nobody types.
  void AskSoon(const DiskPtr& message);
  /// Asks now what is still to be asked.
  void AskIfDue();

 private:
  void Ask();
  bool IsWanted() const;

  Context& context_;
  MessageHost& host_;
  QWidget& window_;
  DiskPtr message_;
  QPointer<QObject> pause_;  // the wait before the question
};

}  // namespace vorn
