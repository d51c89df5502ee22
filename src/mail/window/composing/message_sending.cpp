#include "mail/window/composing/message_sending.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <tuple>

#include "kit/window/plain_text.h"
#include "kit/window/second_click.h"
#include "mail/message_document.h"
#include "mail/store/mail_store.h"
#include "mail/store/outbox.h"
#include "mail/window/bars/doubt_bar.h"
#include "mail/window/bars/message_bars.h"
#include "mail/window/composing/message_closing.h"
#include "mail/window/composing/message_form.h"
#include "mail/window/fields/address_list.h"
#include "mail/window/host/cancelled_sending.h"
#include "mail/window/host/message_host.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "objects/shown_object.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString NoSenderWords() {
  return Ui::tr("送信者(FROM)が不明です。送信するには送信者を指定して下さい。");
}

}  // namespace

MessageSending::MessageSending(Context& context, MessageHost& host, MessageDocument& document,
                               MessageForm& form, MessageClosing& closing, MessageBars& bars,
                               QWidget& window)
    : context_(context),
      host_(host),
      document_(document),
      form_(form),
      closing_(closing),
      bars_(bars),
      window_(window) {
  connect(&bars.Doubt(), &DoubtBar::SendAgainWanted, this, &MessageSending::SendAgain);
  connect(&bars.Doubt(), &DoubtBar::KeepAsSentWanted, this, &MessageSending::KeepAsSent);
}

QString MessageSending::Missing() const {
  const QList<AddressEntry> addresses = form_.Addresses().Addresses();
  if (!HasKind(addresses, u"TO") && !HasKind(addresses, u"CC") && !HasKind(addresses, u"BC")) {
    return Ui::tr("宛て先(TO,CC,BCC)が不明です。送信するには宛て先を指定して下さい。");
  }
  if (!HasKind(addresses, u"FROM")) return NoSenderWords();
  return form_.Addresses().FirstFault();
}

// The toolbar's send button also takes a message out of the dust.
void MessageSending::SendFromToolbar() {
  if (document_.IsInDust()) {
    const DiskPtr dust = context_.Objects.Find(fixed_serial::kDust);
    const QString name = dust != nullptr ? ShownObject(*dust).Name() : Ui::tr("くずかご");
    const auto answer = ShowBox(
        &window_, QMessageBox::Question,
        Ui::tr("このメールは、") + name + Ui::tr("に入っています。取り出して送信しますか？"),
        QMessageBox::Ok | QMessageBox::Cancel);
    if (answer != QMessageBox::Ok) return;
    document_.Edits().ToggleDust();
    Q_EMIT StateChanged();
    if (!document_.IsWaiting() && !document_.IsUnreadable()) {
      Send();  // without another question
      return;
    }
  }
  SendOrCancel();
}

void MessageSending::SendOrCancel() {
  if (document_.IsWaiting()) {
    Cancel();
  } else if (!document_.IsUnreadable() && MaySendOnceMore()) {
    Send();
  }
}

void MessageSending::Send() {
  form_.FinishEditing();
  const QString missing = Missing();
  if (!missing.isEmpty()) return TellMissing(missing);
  if (form_.Subject().text().isEmpty() &&
      ShowBox(&window_, QMessageBox::Question,
              Ui::tr("件名が設定されていません。送信してよろしいですか？"),
              QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes) {
    return;
  }
  if (!form_.MayTakeChangedFiles(
          Ui::tr("添付ファイル「%1」は、添付してから変わっています。今の内容で"
                 "送信してよろしいですか？"))) {
    return;
  }
  if (!closing_.Close(MessageClosing::Intent::Send)) return;
  window_.close();
  new SecondClick(SecondClick::Lasts::UntilMoved);
}

// Where nobody could be the sender, the way to one is in the window.
void MessageSending::TellMissing(const QString& missing) {
  QPushButton& account = bars_.MakeAccount();
  if (missing == NoSenderWords() && account.isVisible()) {
    ShowBox(&window_, QMessageBox::Information,
            missing + u'\n' +
                Ui::tr("先に、送信するアカウントを「アカウントを作成」のボタンで作ってください。"));
    account.setFocus(Qt::OtherFocusReason);
    return;
  }
  ShowBox(&window_, QMessageBox::Information, missing);
  if (form_.Addresses().FirstFault().isEmpty()) form_.Addresses().setFocus();
  form_.Addresses().GoToFault();
}

// The button stands where that of a received message answers it.
bool MessageSending::MaySendOnceMore() {
  if (document_.Status() != kStatusSent || !Settings(context_).Care().asksToSendAgain) return true;
  return ShowBox(&window_, QMessageBox::Question,
                 Ui::tr("このメッセージは送信済みです。同じ宛て先にもう一度送信しますか？"),
                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

void MessageSending::Cancel() {
  const auto answer =
      ShowBox(&window_, QMessageBox::Question,
              Ui::tr("メッセージの送信をキャンセルして、編集できるようにします。よろしいですか？"),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer == QMessageBox::Ok) Edit();
}

void MessageSending::Edit() {
  std::ignore = CancelSending(context_, window_, *document_.Bag());  // its state tells
  host_.MessageStored();
  Q_EMIT AnewWanted();
}

void MessageSending::ShowDoubt() {
  isDoubtful_ = false;
  bars_.Doubt().hide();
  if (!document_.IsWaiting()) return;
  Outbox outbox(context_, document_.File());
  outbox.SettleLeftOver();
  const auto doubtful = outbox.FindDoubtful(document_.Bag()->Serial()).ValueOr({});
  isDoubtful_ = doubtful.has_value();
  if (doubtful) bars_.Doubt().Show(*doubtful);
  Q_EMIT StateChanged();
}

// What is about to wait stands in the window alone as long as a question is open, and what is
// stored is older.
bool MessageSending::HasGone() const {
  if (!document_.IsWaiting() || isDoubtful_ || document_.IsSending()) return false;
  const auto waiting = Outbox(context_, document_.File()).Read(document_.Tag());
  return waiting && waiting->reading == Outbox::Reading::Gone;
}

void MessageSending::SendAgain() {
  const Result<> waits = Outbox(context_, document_.File()).SendAgain(document_.Tag());
  Q_EMIT AnewWanted();
  host_.MessageStored();
  if (waits) host_.SendMessage(document_.Tag());
  TellFailure(waits);
}

void MessageSending::KeepAsSent() {
  const Result<> kept = Outbox(context_, document_.File()).KeepAsSent(document_.Tag());
  Q_EMIT AnewWanted();
  host_.MessageStored();
  TellFailure(kept);
}

// That somebody else was quicker is seen by what is opened.
void MessageSending::TellFailure(const Result<>& done) {
  if (done || done.Error().kind == StorageError::Kind::NotFound) return;
  ShowBox(&window_, QMessageBox::Critical, done.Error().text);
}

}  // namespace vorn
