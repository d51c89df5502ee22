#pragma once

#include <QMessageBox>

#include "mail/closing_rules.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

class MessageDocument;
class MessageForm;
class MessageHost;
class ReceiptQuestion;

/// The rules by which the window of a message closes: what is stored, what is asked before, and
/// what keeps the window open.
class MessageClosing {
 public:
  /// What the user closes the window for.
  enum class Intent {
    Leave,  ///< what is to be kept is stored
    Send,   ///< the message is stored and goes out
  };

  /// Questions stand before `window`, which is closed when its message is deleted.
  MessageClosing(Context& context, MessageHost& host, MessageDocument& document, MessageForm& form,
                 ReceiptQuestion& receipt, QWidget& window);

  void SetEdited(bool isEdited) { isEdited_ = isEdited; }
  /// Stores what closing keeps, once; false when the window has to stay open, as while a question
  /// of an earlier call stands.
  bool Close(Intent intent);
  bool IsClosed() const { return isClosed_; }
  /// Stores what of the message's state was changed, or tells why it cannot be.
  void StoreState();
  /// Deletes the message, after asking.
  void Delete();

 private:
  LeftMessage Left() const;
  bool Leave();
  bool LeaveAsked(bool isAnew);
  bool StoreDraft();
  bool StoreAnew();
  bool Send();
  bool StoreToSend();
  void FinishEditing();
  bool HasSender();
  bool HoldsNothing() const;
  QMessageBox::StandardButton AskForChoice(const QString& question);
  bool StoreEdited();
  void NoteAnswer();
  void ForgetWriting();

  Context& context_;
  MessageHost& host_;
  MessageDocument& document_;
  MessageForm& form_;
  ReceiptQuestion& receipt_;
  QWidget& window_;
  bool isEdited_ = false;
  bool isClosing_ = false;
  bool isClosed_ = false;
};

}  // namespace vorn
