#include "mail/window/composing/message_closing.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <tuple>

#include "kit/window/plain_text.h"
#include "mail/codec/text/line_wrapping.h"
#include "mail/compose_message.h"
#include "mail/message_document.h"
#include "mail/store/drafts.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_filing.h"
#include "mail/window/composing/message_form.h"
#include "mail/window/composing/receipt_question.h"
#include "mail/window/composing/shown_signature.h"
#include "mail/window/fields/address_list.h"
#include "mail/window/host/message_host.h"
#include "objects/settings.h"
#include "storage/message_state.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kMostColumns = 72;  // of a line that is sent

}  // namespace

MessageClosing::MessageClosing(Context& context, MessageHost& host, MessageDocument& document,
                               MessageForm& form, ReceiptQuestion& receipt, QWidget& window)
    : context_(context),
      host_(host),
      document_(document),
      form_(form),
      receipt_(receipt),
      window_(window) {}

QMessageBox::StandardButton MessageClosing::AskForChoice(const QString& question) {
  // Who ends the program by mistake may want to stay.
  const bool mayStay =
      !host_.IsClosing() || (Settings(context_).Care().mayStay && !qApp->isSavingSession());
  QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No;
  if (mayStay) buttons |= QMessageBox::Cancel;
  return ShowBox(&window_, QMessageBox::Question, question, buttons, QMessageBox::Yes,
                 // Without "Cancel" Escape keeps what was written, rather than the contrary.
                 mayStay ? QMessageBox::NoButton : QMessageBox::Yes);
}

bool MessageClosing::StoreEdited() {
  MessageModel model = form_.Take(document_.Model());
  const Settings settings(context_);
  if (document_.IsSending() && settings.WrapsLines()) {
    model.text = WrapLines(model.text.Get(), kMostColumns, EditSettings::From(settings).memoIndent);
  }
  const Result<QByteArray> source = document_.Compose(model);
  if (!source) {
    ShowBox(&window_, QMessageBox::Critical, source.Error().text);
    return false;
  }
  const Result<SerialId> stored = MailStore(context_).StoreMessage(*document_.Bag(), *source);
  if (stored) {
    Drafts::Forget(context_, document_.Tag());
    NoteAnswer();
    host_.MessageStored();
    return true;
  }
  ShowBox(&window_, QMessageBox::Critical,
          Ui::tr("メッセージを保存できません。") + stored.Error().text);
  return false;
}

// Whether it holds nothing but what the program wrote into it.
bool MessageClosing::HoldsNothing() const {
  if (isEdited_ || form_.Addresses().HasRecipient()) return false;
  const MessageModel model = form_.Take(document_.Model());
  QString text = model.text.Get();
  if (!model.signature.isEmpty()) text.remove(ShownBlock(model.signature));
  return model.subject.isEmpty() && model.attachments.empty() && text.trimmed().isEmpty();
}

bool MessageClosing::Close(Intent intent) {
  if (isClosed_ || isClosing_) return isClosed_;
  const QScopedValueRollback<bool> closing(isClosing_, true);
  return isClosed_ = intent == Intent::Send ? Send() : Leave();
}

LeftMessage MessageClosing::Left() const {
  LeftMessage left{.isUnreadable = document_.IsUnreadable(),
                   .isNew = document_.IsNew(),
                   .isAnswer = document_.Request().Mode() != OpenMode::Show,
                   .isEditable = document_.IsEditable(),
                   .isEdited = isEdited_};
  left.isErased = left.isEditable && IsErased(context_, document_);
  left.isBlank = left.isNew && HoldsNothing();
  return left;
}

bool MessageClosing::Leave() {
  if (document_.Bag() == nullptr || document_.Request().IsDeleted()) return true;
  if (!document_.IsUnreadable()) FinishEditing();
  const Leaving leaving = RuleOfLeaving(Left(), Settings(context_).Care().dropsBlank);
  switch (leaving) {
    case Leaving::Dropped:
      return true;
    case Leaving::AskedAbout:
    case Leaving::AskedAboutAnew:
      return LeaveAsked(leaving == Leaving::AskedAboutAnew);
    case Leaving::Stored:
      return StoreDraft();
    case Leaving::StateKept:
      StoreState();
  }
  return true;
}

bool MessageClosing::LeaveAsked(bool isAnew) {
  const auto answer =
      AskForChoice(isAnew ? Ui::tr("このメッセージは削除されました。新しいメッセージとして"
                                   "保存します。よろしいですか？")
                          : Ui::tr("このメッセージを保存します。よろしいですか？"));
  if (answer == QMessageBox::Cancel) return false;
  if (answer != QMessageBox::Yes) {
    ForgetWriting();
    return true;
  }
  return isAnew ? StoreAnew() : StoreDraft();
}

bool MessageClosing::StoreDraft() {
  return form_.MayTakeChangedFiles(Ui::tr("添付ファイル「%1」は、添付してから変わっています。"
                                          "今の内容で保存してよろしいですか？")) &&
         StoreEdited();  // else the text stays
}

// What was erased was in the dust bin.
bool MessageClosing::StoreAnew() {
  const StoredState before = MessageBag(*document_.Bag()).State();
  MessageBag::SetStatus(*document_.Bag(), kStatusEdit);
  if (StoreDraft()) return true;
  MessageBag::SetState(*document_.Bag(), before);
  return false;
}

bool MessageClosing::Send() {
  const StoredState before = document_.BeginSending();
  if (StoreToSend()) return true;
  document_.EndSending(before);
  return false;
}

bool MessageClosing::StoreToSend() {
  FinishEditing();
  if (!HasSender()) return false;
  if (!StoreEdited()) return false;
  host_.SendMessage(document_.Tag());
  return true;
}

void MessageClosing::FinishEditing() {
  form_.FinishEditing();
  if (!host_.IsClosing()) receipt_.AskIfDue();
}

// Whether an account sends it. Asked while the message can still be edited.
bool MessageClosing::HasSender() {
  QStringList lines;
  for (const AddressEntry& entry : form_.Addresses().Addresses()) {
    lines.append(CanonicalLine({entry.kind, entry.address, {}}));
  }
  return host_.ChooseSender(document_.Tag(), lines.join(kLineBreak), form_.Subject().text());
}

// The message that this one answers or forwards is marked when this one is to go out. Until then it
// is noted which one that is.
void MessageClosing::NoteAnswer() {
  const std::optional<Answered> answered = document_.AnsweredMessage();
  if (!answered) return;
  // The answer itself is stored; the mark is no more than a help.
  if (!document_.IsSending()) {
    std::ignore = AnswerNotes::Keep(context_, document_.Tag(), *answered);
    return;
  }
  std::ignore = SetMark(context_, {answered->original}, answered->mark, true);
  AnswerNotes::Forget(context_, document_.Tag());
}

// It is not going to be stored, or is so no more.
void MessageClosing::ForgetWriting() {
  Drafts::Forget(context_, document_.Tag());
  AnswerNotes::Forget(context_, document_.Tag());
}

void MessageClosing::StoreState() {
  if (!document_.Edits().HasAny() || IsErased(context_, document_)) return;
  const std::optional<bool> dust = document_.Edits().Dust();
  const Result<> stored = document_.Edits().Store();
  if (stored && dust) host_.DustChanged(document_.Tag(), *dust);
  host_.MessageStored();
  if (stored) return;
  ShowBox(&window_, QMessageBox::Critical,
          Ui::tr("メッセージを変更できません。") + stored.Error().text);
}

void MessageClosing::Delete() {
  const auto answer =
      ShowBox(&window_, QMessageBox::Question, Ui::tr("メッセージを削除します。よろしいですか？"),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  const Result<> deleted = MailStore(context_).DeleteMessage(*document_.Bag());
  if (!deleted) {
    ShowBox(&window_, QMessageBox::Critical,
            Ui::tr("メッセージを削除できません。") + deleted.Error().text);
    return;
  }
  document_.Request().BeDeleted();
  ForgetWriting();
  host_.MessageStored();
  window_.close();
}

}  // namespace vorn
