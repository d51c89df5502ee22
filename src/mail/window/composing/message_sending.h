#pragma once

#include <QObject>

#include "storage/base/result.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

class MessageBars;
class MessageClosing;
class MessageDocument;
class MessageForm;
class MessageHost;

/// Sends the message of a window, or cancels its sending, after the questions that are due; asks
/// what is to become of one of which nobody knows whether it was sent.
class MessageSending : public QObject {
  Q_OBJECT

 public:
  /// Questions stand before `window`, which closes once its message is about to go out.
  MessageSending(Context& context, MessageHost& host, MessageDocument& document, MessageForm& form,
                 MessageClosing& closing, MessageBars& bars, QWidget& window);

  /// Sends, or cancels the sending of what waits.
  void SendOrCancel();
  /// The same from the toolbar, which also takes a message out of the dust.
  void SendFromToolbar();
  /// Makes what waits a message that is edited, without a question.
  void Edit();
  /// The sentence that keeps the message from being sent; empty when nothing does.
  QString Missing() const;
  /// Shows whether it is doubtful that what waits was sent.
  void ShowDoubt();
  bool IsDoubtful() const { return isDoubtful_; }
  /// Whether what waited in the window waits no more.
  bool HasGone() const;

 Q_SIGNALS:
  /// The message is to be opened anew.
  void AnewWanted();
  /// It stands otherwise with the message.
  void StateChanged();

 private:
  void Send();
  void TellMissing(const QString& missing);
  bool MaySendOnceMore();
  void Cancel();
  void SendAgain();
  void KeepAsSent();
  void TellFailure(const Result<>& done);

  Context& context_;
  MessageHost& host_;
  MessageDocument& document_;
  MessageForm& form_;
  MessageClosing& closing_;
  MessageBars& bars_;
  QWidget& window_;
  bool isDoubtful_ = false;  // whether what waits was sent
};

}  // namespace vorn
