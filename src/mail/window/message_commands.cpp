// The message window's commands.

#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "auxiliary/window/address_window.h"
#include "auxiliary/window/console_window.h"
#include "kit/window/notice_bar.h"
#include "kit/window/plain_text.h"
#include "kit/window/second_click.h"
#include "mail/attachment_files.h"
#include "mail/codec/flag_string.h"
#include "mail/codec/inline_images.h"
#include "mail/drafts.h"
#include "mail/mail_store.h"
#include "mail/message_filing.h"
#include "mail/outbox.h"
#include "mail/print_page.h"
#include "mail/window/address_list.h"
#include "mail/window/attachment_list.h"
#include "mail/window/calendar_bar.h"
#include "mail/window/code_dialog.h"
#include "mail/window/doubt_bar.h"
#include "mail/window/header_list.h"
#include "mail/window/message_body.h"
#include "mail/window/message_printing.h"
#include "mail/window/message_window.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/private_files.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {
namespace {

const QString kProcess = QStringLiteral("process");
constexpr qsizetype kSourceShown = 1024 * 1024;
constexpr QSize kSourceSize(720, 560);

bool HasKind(const QList<AddressEntry>& addresses, std::initializer_list<QStringView> kinds) {
  return std::any_of(addresses.begin(), addresses.end(), [&kinds](const AddressEntry& entry) {
    return std::find(kinds.begin(), kinds.end(), QStringView(entry.kind)) != kinds.end();
  });
}

}  // namespace

QString MessageWindow::MissingForSending() const {
  const QList<AddressEntry> addresses = lvMailaddress_->Addresses();
  if (!HasKind(addresses, {u"TO", u"CC", u"BC"})) {
    return Ui::tr("宛て先(TO,CC,BCC)が不明です。送信するには宛て先を指定して下さい。");
  }
  if (!HasKind(addresses, {u"FROM"})) {
    return Ui::tr("送信者(FROM)が不明です。送信するには送信者を指定して下さい。");
  }
  return lvMailaddress_->FirstFault();
}

// The toolbar's send button also takes a message out of the dust.
void MessageWindow::ToolbarSend() {
  if (request_->Number(kProcess) < 0) {
    const DiskPtr dust = context_.Objects.Find(fixed_serial::kDust);
    const QString name = dust != nullptr ? dust->Text(u"Object") : Ui::tr("くずかご");
    const auto answer = ShowBox(
        this, QMessageBox::Question,
        Ui::tr("このメールは、") + name + Ui::tr("に入っています。取り出して送信しますか？"),
        QMessageBox::Ok | QMessageBox::Cancel);
    if (answer != QMessageBox::Ok) return;
    ToggleDust();
    if (!IsWaiting() && !unreadable_) {
      Send();  // without another question
      return;
    }
  }
  SendClicked();
}

void MessageWindow::SendClicked() {
  if (IsWaiting()) {
    CancelSending();
  } else if (!unreadable_ && MaySendOnceMore()) {
    Send();
  }
}

void MessageWindow::Send() {
  FinishEditing();
  const QString missing = MissingForSending();
  if (!missing.isEmpty()) {
    ShowBox(this, QMessageBox::Information, missing);
    lvMailaddress_->setFocus();
    lvMailaddress_->GoToFault();
    return;
  }
  if (txSubject_->text().isEmpty() &&
      ShowBox(this, QMessageBox::Question,
              Ui::tr("件名が設定されていません。送信してよろしいですか？"),
              QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes) {
    return;
  }
  if (!MayTakeChangedFiles(Ui::tr("添付ファイル「%1」は、添付してから変わっています。今の内容で"
                                  "送信してよろしいですか？"))) {
    return;
  }
  const int before = request_->Number(kProcess);
  request_->Let(QStringLiteral("send"), true);
  request_->Let(kProcess, static_cast<int>(kStatusWaiting));
  if (close()) {
    new SecondClick(SecondClick::Lasts::UntilMoved);
    return;
  }
  request_->Let(QStringLiteral("send"), false);
  request_->Let(kProcess, before);
}

bool MessageWindow::MayTakeChangedFiles(const QString& question) {
  const QStringList changed = lvClip_->ChangedFiles();
  if (changed.isEmpty()) return true;
  const auto answer =
      ShowBox(this, QMessageBox::Question, question.arg(changed.join(Ui::tr("」「"))),
              QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
  if (answer == QMessageBox::Yes) lvClip_->AcceptChanges();
  return answer == QMessageBox::Yes;
}

// The button stands where that of a received message answers it.
bool MessageWindow::MaySendOnceMore() {
  if (AbsoluteStatus() != kStatusSent || !Settings(context_)->Flag(u"Careful")) return true;
  return ShowBox(this, QMessageBox::Question,
                 Ui::tr("このメッセージは送信済みです。同じ宛て先にもう一度送信しますか？"),
                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

void MessageWindow::CancelSending() {
  const auto answer =
      ShowBox(this, QMessageBox::Question,
              Ui::tr("メッセージの送信をキャンセルして、編集できるようにします。よろしいですか？"),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  if (!MailStore(context_).CancelWaiting(*request_)) {
    ShowBox(this, QMessageBox::Information,
            Ui::tr("このメッセージは、もう送信待ちではありません（送信中か、送信済みか、削除されて"
                   "います）。"));
  }
  host_.MessageStored();
  Open();
}

void MessageWindow::ShowDoubt() {
  doubt_->hide();
  if (!IsWaiting()) return;
  Outbox outbox(context_, request_->Text(u"file", MailDatabasePath(context_)));
  outbox.SettleLeftOver();
  const auto doubtful = outbox.FindDoubtful(request_->SerialID());
  if (doubtful) doubt_->Show(*doubtful);
  CheckMenus();
}

void MessageWindow::SendAgain() {
  const Result<> waits =
      Outbox(context_, request_->Text(u"file", MailDatabasePath(context_))).SendAgain(tag_);
  Open();
  host_.MessageStored();
  if (waits) host_.SendMessage(tag_);
}

void MessageWindow::KeepAsSent() {
  // Whether it worked is seen by what is opened.
  std::ignore =
      Outbox(context_, request_->Text(u"file", MailDatabasePath(context_))).KeepAsSent(tag_);
  Open();
  host_.MessageStored();
}

// Only what was changed here: the folder's page may have changed the rest meanwhile.
void MessageWindow::StoreState() {
  const int changed = std::exchange(changedState_, 0);
  MailStore store(context_);
  // A message may have been sent since the window was opened: the dust bin changes the sign alone.
  Result<> stored;
  if ((changed & kStateStatus) != 0) {
    stored = store.SetDust(*request_, request_->Number(kProcess) < 0);
  }
  if (const int rest = changed & ~kStateStatus; rest != 0) {
    const Result<> rewritten = store.UpdateMessageState(rest, *request_, true);
    if (!rewritten) stored = rewritten;
  }
  if (!stored) {
    ShowBox(this, QMessageBox::Critical,
            Ui::tr("メッセージを変更できません。") + stored.Error().text);
  }
}

void MessageWindow::TurnInto(OpenMode mode) {
  if (unreadable_) return;
  StoreState();
  request_->Let(QStringLiteral("open"), static_cast<int>(mode));
  request_->Let(QStringLiteral("new"), true);
  // In the code in which it is read; a message that was erased meanwhile is answered as it is
  // shown.
  Open(false, source_);
  new SecondClick(SecondClick::Lasts::UntilMoved);  // the button that sends stands there now
}

void MessageWindow::ToggleDust() {
  request_->Let(kProcess, -request_->Number(kProcess));
  changedState_ |= kStateStatus;
  CheckMenus();
}

void MessageWindow::DeleteClicked() {
  const auto answer =
      ShowBox(this, QMessageBox::Question, Ui::tr("メッセージを削除します。よろしいですか？"),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  const Result<> deleted = MailStore(context_).DeleteMessage(*request_);
  if (!deleted) {
    ShowBox(this, QMessageBox::Critical,
            Ui::tr("メッセージを削除できません。") + deleted.Error().text);
    return;
  }
  request_->Let(QStringLiteral("messagedelete"), true);
  Drafts::Forget(context_, tag_);
  host_.MessageStored();
  close();
}

void MessageWindow::ChooseFolders() {
  if (TellUnreadable()) return;
  QStringList entries;
  const DiskCollectionPtr folders =
      SelectObjects(context_.Objects, *context_.Session, QStringLiteral("static"));
  if (folders->IsEmpty()) {
    ShowBox(this, QMessageBox::Information, NoFolderWords());
    return;
  }
  for (const DiskPtr& folder : *folders) {
    // "@" separates the fields of an entry.
    QString name = folder->Text(u"Object");
    entries.append(folder->SerialID() + u'@' + name.replace(u'@', u'＠') + u'@' +
                   folder->Text(u"Draw"));
  }
  const QString chosen = InputList(context_, this, Ui::tr("保存フォルダ"),
                                   Ui::tr("メッセージを保存するフォルダを選択してください。"),
                                   request_->Text(u"folder"), entries.join(kLineBreak), true);
  if (context_.Session->Flag(u"cancel")) return;
  request_->Let(QStringLiteral("folder"), chosen);
  changedState_ |= kStateFolders;
}

// Whether there is nothing to work with, which is told.
bool MessageWindow::TellUnreadable() {
  if (!unreadable_) return false;
  ShowBox(this, QMessageBox::Critical, body_->Text()->toPlainText());
  return true;
}

void MessageWindow::SaveToFile() {
  if (TellUnreadable()) return;
  FinishEditing();
  const Result<QByteArray> composed = IsEditable() ? Compose() : source_;
  if (!composed) ShowBox(this, QMessageBox::Critical, composed.Error().text);
  QByteArray source = composed.ValueOr({});
  if (source.isEmpty()) return;
  const bool isReceived = qAbs(request_->Number(kProcess)) == kStatusReceived;
  if (Settings(context_)->Flag(u"StandardHeaders") && !isReceived) {
    source = MimeCodec::WithoutEndMark(source);
  }
  const QString path =
      AskFileToSave(context_, this, FileTask::SaveMessage, Ui::tr("ファイルに保存"),
                    SafeFileName(GetMessageSubject()) + QStringLiteral(".eml"),
                    Ui::tr("メッセージファイル (*.eml)"));
  if (path.isEmpty()) return;
  QSaveFile file(path);
  if (file.open(QIODevice::WriteOnly) && file.write(source) == source.size() && file.commit()) {
    return;
  }
  ShowBox(
      this, QMessageBox::Critical,
      Ui::tr("「%1」に保存できません。ディスクの空き容量とフォルダを確認してください。").arg(path));
}

QString MessageWindow::ShownHtml() const {
  return WithInlineImages(html_, source_, request_->Text(u"content"));
}

void MessageWindow::PrintClicked() {
  if (TellUnreadable()) return;
  FinishEditing();
  // What is in front is what is printed.
  PrintMessagePage(context_, this, host_, PrintPage(CurrentModel(), body_->HtmlInFront()));
}

void MessageWindow::ShowSource() {
  if (TellUnreadable()) return;
  FinishEditing();
  const QByteArray source = IsEditable() ? Compose().ValueOr({}) : source_;
  auto* dialog = new QDialog(this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setObjectName(QStringLiteral("source"));
  dialog->setWindowTitle(ShownText(GetMessageSubject(), kMostInTitle) + Ui::tr(" ソース"));
  dialog->resize(kSourceSize);
  auto* text = new QPlainTextEdit(DecodeAutomatically(source.left(kSourceShown), Charset(), true));
  text->setReadOnly(true);
  text->setFont(body_->Text()->font());
  auto* layout = new QVBoxLayout(dialog);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(text);
  dialog->show();
}

void MessageWindow::ChoosePriority(int priority) {
  const QStringList values = {QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("5")};
  request_->Let(QStringLiteral("flag"),
                SetFlagChar(request_->Text(u"flag"), kFlagPriority, QString::number(priority)));
  lvHeader_->SetHeader(QStringLiteral("X-Priority:"), values.value(priority - 1));
  MarkEdited();
}

void MessageWindow::SetActiveCharset(CharsetChoice charset) {
  if (unreadable_) return;
  charset_ = charset;
  isPicked_ = true;
  readAs_.reset();
  if (IsEditable() || IsWaiting()) {
    MarkEdited();
    return;
  }
  // The automatic choice leaves the stored one as it was.
  request_->Let(QStringLiteral("flag"), SetFlagChar(request_->Text(u"flag"), kFlagCode,
                                                    QString::number(static_cast<int>(charset))));
  // Opening reads the stored state again.
  changedState_ |= kStateFlag;
  StoreState();
  Open(false);
}

// Any code there is, without a trace in what is stored.
void MessageWindow::ReadAs() {
  if (TellUnreadable()) return;
  const QString index = request_->Text(u"content");
  const QStringList types = EditSettings::From(*Settings(context_)).textTypes;
  const auto chosen =
      ChooseCode(this, OfferCodes(source_, index, types), WrongLabels(source_, index, types));
  if (!chosen) return;
  readAs_ = chosen;
  StoreState();  // opening reads the stored state again
  Open(false, source_);
}

void MessageWindow::ReadAsDeclared() {
  StoreState();
  Open();
}

void MessageWindow::ShowReading() {
  reading_->Say(readAs_ && !IsEditable()
                    ? Ui::tr("この画面では「%1」として読んでいます。").arg(readAs_->name)
                    : QString());
}

void MessageWindow::ChooseAddresses() {
  InsertRows(
      SelectAddresses(context_, this, QStringLiteral("owner") + kLineBreak + object_type::kBook));
}

void MessageWindow::InsertRows(const QString& addressLines) {
  for (const QString& line : addressLines.split(kLineBreak, Qt::SkipEmptyParts)) {
    lvMailaddress_->Add(ParseAddressEntry(line));
  }
}

// The answer goes to the organizer, from the address that was invited; the user sees it first.
void MessageWindow::AnswerInvitation(const Invitation& invitation, InvitationAnswer answer) {
  TurnInto(OpenMode::Reply);
  const QString own = OwnAddress(context_, invitation.attendees);
  AddressEntry sender = ParseAddressEntry(QStringLiteral("FROM: ") + own, true);
  for (const AddressEntry& entry : model_.addresses) {
    const bool isInvited = own.isEmpty() || entry.address.compare(own, Qt::CaseInsensitive) == 0;
    if (entry.kind == u"FROM" && isInvited) sender = entry;
  }
  model_.calendarReply = ReplyCalendar(invitation, sender.address, answer);
  lvMailaddress_->Show(
      {ParseAddressEntry(QStringLiteral("TO: ") + invitation.organizer, true), sender}, true);
  txSubject_->setText(AnswerSubject(answer, invitation.summary));
  txSubject_->setCursorPosition(0);
  body_->Text()->setPlainText(AnswerText(answer));
  calendar_->ShowAnswer(*model_.calendarReply, true);
  MarkEdited();
}

// The words that were written for the answer before follow, where they still stand. Where they were
// edited they are the user's own, and he is told that they may say something else now.
void MessageWindow::ChangeAnswer(InvitationAnswer answer) {
  const auto before = ReadReply(model_.calendarReply.value_or(QByteArray()));
  if (!before) return;
  model_.calendarReply = ChangeReply(*model_.calendarReply, before->address, answer);
  const QString subject = txSubject_->text();
  const QString former = AnswerSubject(before->answer, before->summary);
  if (const qsizetype at = subject.indexOf(former); at >= 0) {
    txSubject_->setText(
        QString(subject).replace(at, former.size(), AnswerSubject(answer, before->summary)));
  }
  QTextCursor sentence = body_->Text()->document()->find(AnswerText(before->answer).trimmed(), 0,
                                                         QTextDocument::FindCaseSensitively);
  if (!sentence.isNull()) sentence.insertText(AnswerText(answer).trimmed());
  answerChanged_ = answerChanged_ || answer != before->answer;
  CheckAnswerWords();
  MarkEdited();
}

// Also when they are undone or edited later. Who has not changed his answer may word it as he
// likes.
void MessageWindow::CheckAnswerWords() {
  if (!answerChanged_) return;
  const auto reply = ReadReply(model_.calendarReply.value_or(QByteArray()));
  calendar_->SayWordsStay(
      reply && !body_->Text()->toPlainText().contains(AnswerText(reply->answer).trimmed()));
}

void MessageWindow::ShowNeighbour(int step) {
  if (IsEditable()) return;
  const QString serialId = host_.NeighbourMessage(tag_, step);
  if (serialId.isEmpty()) return;
  StoreState();
  auto next = std::make_shared<Disk>(serialId);
  for (const char16_t* key : {u"db", u"file", u"password"}) {
    const QString name = QString::fromUtf16(key);
    if (const QVariant value = request_->Get(name); value.isValid()) next->Let(name, value);
  }
  LoadDefaultProperty(next, true);
  receipt_.AskSoon(request_);
}

}  // namespace vorn
