#include "mail/window/composing/receipt_question.h"

#include <QMessageBox>
#include <QWidget>

#include "kit/window/unasked_question.h"
#include "mail/mail_request_bag.h"
#include "objects/settings.h"
#include "storage/ui.h"

namespace vorn {

bool ReceiptQuestion::IsWanted() const {
  return message_ != nullptr && MailRequestBag(*message_).AsksForReceipt();
}

void ReceiptQuestion::AskSoon(const DiskPtr& message) {
  message_ = message;
  if (!IsWanted() || !Settings(context_).SendsReceipts() || pause_ != nullptr) return;
  // Who has opened a reply is typing already.
  pause_ = new TypingPause(&window_, [this] {
    if (IsWanted()) Ask();
  });
}

void ReceiptQuestion::AskIfDue() {
  if (pause_ != nullptr && IsWanted()) Ask();
}

void ReceiptQuestion::Ask() {
  MailRequestBag(*message_).SetAsksForReceipt(false);
  const auto answer = ShowUnaskedBox(
      &window_, QMessageBox::Question,
      Ui::tr("このメッセージは、送信された方から開封通知の要求がされています。通知しますか？"),
      QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
  if (answer != QMessageBox::Yes) return;
  const bool edits = Settings(context_).EditsReceipts();
  MailRequest receipt;
  receipt.mode = OpenMode::Receipt;
  // A reply that was opened at once has an identifier of its own.
  receipt.serialId = MailRequestBag(*message_).Original();
  receipt.isNew = true;
  receipt.database = DatabaseKind::Mail;
  receipt.show = edits ? kShowModeless : kShowHidden;
  receipt.autoSend = !edits;
  host_.PostMail(receipt);
}

}  // namespace vorn
