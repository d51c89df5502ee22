#include "mail/window/message_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFileInfo>
#include <QGuiApplication>
#include <QInputMethod>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTabWidget>
#include <QToolBar>

#include "kit/window/cascade.h"
#include "kit/window/icons.h"
#include "kit/window/notice_bar.h"
#include "kit/window/plain_text.h"
#include "kit/window/screen_fit.h"
#include "mail/attachment_files.h"
#include "mail/codec/flag_string.h"
#include "mail/codec/line_wrapping.h"
#include "mail/compose_message.h"
#include "mail/drafts.h"
#include "mail/mail_store.h"
#include "mail/message_filing.h"
#include "mail/outbox.h"
#include "mail/window/address_list.h"
#include "mail/window/attachment_list.h"
#include "mail/window/calendar_bar.h"
#include "mail/window/doubt_bar.h"
#include "mail/window/header_list.h"
#include "mail/window/message_body.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/ui.h"
#include "storage/window/control_state.h"

namespace vorn {
namespace {

constexpr QSize kMessageSize(760, 620);
constexpr int kDraftMs = 30000;
constexpr int kMostColumns = 72;  // of a line that is sent
// Attachments above this together are left out of drafts: writing them would hold the window up.
constexpr qint64 kDraftAttachmentBytes = 2 * 1024 * 1024;
const QString kProcessKey = QStringLiteral("process");

// A signature as it stands in the box.
QString ShownBlock(const QString& signature) {
  return SignatureBlock(signature).replace(kLineBreak, QStringLiteral("\n"));
}

qint64 SizeOf(const ModelAttachment& attachment) {
  return attachment.isNew ? QFileInfo(attachment.path).size()
                          : static_cast<qint64>(attachment.record.Size());
}

}  // namespace

MessageWindow::MessageWindow(Context& context, MessageHost& host, const EventLog& events)
    : context_(context), host_(host), events_(events), receipt_(context, host, *this) {
  setObjectName(QStringLiteral("Mail"));
  setWindowIcon(Icon(QStringLiteral("mail")));
  setAttribute(Qt::WA_DeleteOnClose);
  resize(kMessageSize);
  BuildControls();
  BuildMenus();
  drafts_.setParent(this);
  drafts_.setObjectName(QStringLiteral("tmDraft"));
  connect(&drafts_, &QTimer::timeout, this, &MessageWindow::KeepDraft);
  drafts_.start(kDraftMs);
}

int MessageWindow::AbsoluteStatus() const {
  return request_ == nullptr ? static_cast<int>(kStatusEdit)
                             : qAbs(request_->Number(kProcessKey, kStatusEdit));
}

bool MessageWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  request_ = request;
  Open();
  ShowEventPage();
  if (!request_->Flag(u"AutoSend")) return true;
  if (!unreadable_ && MissingForSending().isEmpty()) {
    request_->Let(QStringLiteral("send"), true);
    request_->Let(kProcessKey, static_cast<int>(kStatusWaiting));
    closed_ = StoreForClosing();
    if (closed_) return false;
    request_->Let(QStringLiteral("send"), false);
    request_->Let(kProcessKey, static_cast<int>(kStatusEdit));
  }
  request_->Let(QStringLiteral("show"),
                static_cast<int>(kShowModeless));  // for the user to see why
  MarkEdited();                                    // it was to go out
  return true;
}

void MessageWindow::Open(bool applyStoredCharset, const QByteArray& shown) {
  if (applyStoredCharset) {
    isPicked_ = false;
    readAs_.reset();
  }
  ReadingCode code(charset_, isPicked_);
  if (readAs_) code.forced = readAs_->charset;
  const OpenedMessage opened = OpenMessage(context_, *request_, applyStoredCharset, code, shown);
  charset_ = opened.charset;
  Fill(opened);
  ShowDoubt();
  if (opened.first) host_.MessageStored();
  tag_ = request_->SerialID();
}

void MessageWindow::Fill(const OpenedMessage& opened) {
  model_ = opened.model;
  source_ = opened.source;
  html_ = opened.html;
  // One that is gone has nothing that could be edited or sent.
  const bool isGone = !opened.found && !request_->Flag(u"new") && opened.source.isEmpty();
  unreadable_ = opened.unreadable.has_value() || isGone;
  if (isGone) request_->Let(kProcessKey, static_cast<int>(kStatusEdit));  // it waits no longer
  const bool editable = IsEditable();
  const QString subject = opened.unreadable ? opened.unreadable->subject : model_.subject;
  txSubject_->setText(editable ? subject : ShownInLine(subject));
  txSubject_->setCursorPosition(0);
  txSubject_->setReadOnly(!editable);
  lvMailaddress_->Show(model_.addresses, editable);
  tbMailaddress_->setVisible(editable);
  FitHead(editable);
  if (model_.calendarReply) {
    calendar_->ShowAnswer(*model_.calendarReply, editable);
  } else {
    calendar_->Show(opened.calendar);
  }
  signed_->Say(opened.signature);
  ShowReading();
  lvClip_->Show(model_.attachments, source_, editable);
  lvClip_->setVisible(!model_.attachments.empty());
  lbClip_->setVisible(!model_.attachments.empty());
  const bool hasHtml = !editable && !html_.isEmpty();
  body_->Show(TextOf(opened), editable,
              hasHtml ? [this] { return ShownHtml(); } : std::function<QString()>(),
              IsHtmlFirst(context_, model_) ? MessageBody::Front::Html : MessageBody::Front::Text);
  lvHeader_->Show(model_.headerRows, editable);
  txReference_->setPlainText(model_.references);
  txReference_->setReadOnly(!editable);
  txInReplayTo_->setText(model_.inReplyTo);
  txInReplayTo_->setReadOnly(!editable);
  ShowCaption();
  ControlToolbarUpdate();
  // A new message begins with what it lacks.
  if (editable && !lvMailaddress_->HasRecipient()) {
    lvMailaddress_->setCurrentCell(lvMailaddress_->rowCount() - 1, 1);
    lvMailaddress_->setFocus();
  } else {
    body_->InFront()->setFocus();
  }
  edited_ = draftDue_ = answerChanged_ = false;
  changedState_ = 0;
}

// What stands in the place of a text that there is not.
LazyText MessageWindow::TextOf(const OpenedMessage& opened) const {
  if (opened.unreadable) {
    return Ui::tr("メッセージ%1を読み込めません。").arg(opened.unreadable->Name()) +
           opened.reason.text;
  }
  return opened.found || request_->Flag(u"new") ? opened.model.text
                                                : LazyText(Ui::tr("メッセージがありません。"));
}

QString MessageWindow::GetMessageSubject() const {
  const QString subject = txSubject_->text();
  if (!subject.isEmpty()) return subject;
  return request_ != nullptr && request_->Flag(u"new") ? Ui::tr("新しいメッセージ")
                                                       : Ui::tr("（件名なし）");
}

void MessageWindow::ShowCaption() {
  setWindowTitle(ShownText(GetMessageSubject(), kMostInTitle) + Ui::tr(" プロパティ"));
}

// Another sender signs otherwise; what the user has made of the signature stays.
void MessageWindow::FollowSender() {
  if (!IsEditable()) return;
  for (const AddressEntry& entry : lvMailaddress_->Addresses()) {
    if (entry.kind.compare(u"FROM", Qt::CaseInsensitive) != 0) continue;
    // While another address is being typed the row is nobody's.
    if (OwnAddress(context_, {entry.address}).isEmpty()) return;
    const QString signature = SignatureOf(context_, entry.address);
    const QString before = ShownBlock(model_.signature);
    if (signature == model_.signature || before.isEmpty()) return;
    const qsizetype at = body_->Text()->toPlainText().indexOf(before);
    if (at < 0) return;
    QTextCursor cursor(body_->Text()->document());
    cursor.setPosition(static_cast<int>(at));
    cursor.setPosition(static_cast<int>(at + before.size()), QTextCursor::KeepAnchor);
    cursor.insertText(ShownBlock(signature));
    model_.signature = signature;
    return;
  }
}

void MessageWindow::FinishEditing() {
  QGuiApplication::inputMethod()->commit();
  lvMailaddress_->FinishEditing();
  lvHeader_->FinishEditing();
}

namespace {

// Who sends the answer to an invitation is the one who answers.
void AnswerAsSender(MessageModel& model) {
  const auto reply = ReadReply(*model.calendarReply);
  for (const AddressEntry& entry : model.addresses) {
    if (!reply || entry.kind.compare(u"FROM", Qt::CaseInsensitive) != 0) continue;
    if (entry.address.compare(reply->address, Qt::CaseInsensitive) == 0) return;
    model.calendarReply = ChangeReply(*model.calendarReply, entry.address, reply->answer);
    return;
  }
}

}  // namespace

MessageModel MessageWindow::CurrentModel() const {
  MessageModel model = model_;
  model.subject = txSubject_->text();
  model.addresses = lvMailaddress_->Addresses();
  model.text = body_->Text()->toPlainText();
  model.attachments = lvClip_->Attachments();
  model.headerRows = lvHeader_->Rows();
  model.references = txReference_->toPlainText().simplified();
  model.inReplyTo = txInReplayTo_->text().simplified();
  if (model.calendarReply) AnswerAsSender(model);
  return model;
}

Result<QByteArray> MessageWindow::Compose(const MessageModel& model) const {
  ComposeOptions options;
  options.charset = charset_;
  options.settings = EditSettings::From(*Settings(context_));
  options.boundaryToken = context_.Data.NewSerialID();
  StorageError unreadable;
  options.read = [&](const ModelAttachment& attachment) {
    const Result<QByteArray> bytes = ReadAttachment(attachment, source_);
    if (!bytes) unreadable = bytes.Error();
    return bytes.ValueOr({});
  };
  const QByteArray source = ComposeMessage(model, options);
  if (unreadable) return unreadable;
  return source;
}

bool MessageWindow::AskToSave(bool* cancelled) {
  // Who ends the program by mistake may want to stay.
  const bool mayStay =
      !host_.IsClosing() || (Settings(context_)->Flag(u"Careful") && !qApp->isSavingSession());
  QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No;
  if (mayStay) buttons |= QMessageBox::Cancel;
  const auto answer =
      ShowBox(this, QMessageBox::Question, Ui::tr("このメッセージを保存します。よろしいですか？"),
              buttons, QMessageBox::Yes,
              // Without "Cancel" Escape keeps what was written, rather than the contrary.
              mayStay ? QMessageBox::NoButton : QMessageBox::Yes);
  *cancelled = answer == QMessageBox::Cancel;
  return answer == QMessageBox::Yes;
}

bool MessageWindow::StoreEdited() {
  MessageModel model = CurrentModel();
  const DiskPtr settings = Settings(context_);
  if (request_->Flag(u"send") && settings->Flag(u"WrapLines")) {
    model.text = WrapLines(model.text.Get(), kMostColumns, settings->Text(u"MemoIndent"));
  }
  const Result<QByteArray> source = Compose(model);
  if (!source) {
    ShowBox(this, QMessageBox::Critical, source.Error().text);
    return false;
  }
  const Result<QString> stored = MailStore(context_).StoreMessage(*request_, *source);
  if (stored) {
    Drafts::Forget(context_, tag_);
    host_.MessageStored();
    return true;
  }
  ShowBox(this, QMessageBox::Critical,
          Ui::tr("メッセージを保存できません。") + stored.Error().text);
  return false;
}

// Whether an account sends it. Asked while the message can still be edited.
bool MessageWindow::HasSender() {
  QStringList lines;
  for (const AddressEntry& entry : lvMailaddress_->Addresses()) {
    lines.append(entry.kind + QStringLiteral(": ") + entry.address);
  }
  return host_.ChooseSender(tag_, lines.join(kLineBreak), txSubject_->text());
}

// Whether it holds nothing but what the program wrote into it.
bool MessageWindow::IsBlank() const {
  if (edited_ || lvMailaddress_->HasRecipient()) return false;
  const MessageModel model = CurrentModel();
  QString text = model.text.Get();
  if (!model.signature.isEmpty()) text.remove(ShownBlock(model.signature));
  return model.subject.isEmpty() && model.attachments.empty() && text.trimmed().isEmpty();
}

bool MessageWindow::StoreForClosing() {
  if (request_ == nullptr || request_->Flag(u"messagedelete")) return true;
  if (unreadable_) {
    if (changedState_ != 0) StoreState();
    return true;
  }
  FinishEditing();
  if (!host_.IsClosing()) receipt_.AskIfDue();
  const bool isNew = request_->Flag(u"new");
  const bool sends = request_->Flag(u"send");
  const bool isAnswer = request_->Number(u"open") != static_cast<int>(OpenMode::Show);
  if (isNew && isAnswer && !sends && !edited_) return true;  // it can be made again
  if (isNew && !sends && IsBlank() && Settings(context_)->Flag(u"Careful")) return true;
  if (isNew && !sends) {
    bool cancelled = false;
    const bool save = AskToSave(&cancelled);
    if (cancelled) return false;
    if (!save) {
      Drafts::Forget(context_, tag_);
      return true;
    }
  }
  if (sends || (IsEditable() && (isNew || edited_))) {
    if (sends && !HasSender()) return false;
    if (!sends && !MayTakeChangedFiles(Ui::tr("添付ファイル「%1」は、添付してから変わっています。"
                                              "今の内容で保存してよろしいですか？"))) {
      return false;
    }
    if (!StoreEdited()) return false;  // the text stays
    if (sends) {
      NoteAnswer();
      host_.SendMessage(tag_);
    }
    return true;
  }
  if (changedState_ != 0) {
    StoreState();
    host_.MessageStored();
  }
  return true;
}

// On the message that this one answers or forwards.
void MessageWindow::NoteAnswer() {
  const auto mode = static_cast<OpenMode>(request_->Number(u"open"));
  const bool forwards = mode == OpenMode::Forward || mode == OpenMode::ForwardKeepFrom;
  const bool answers = mode == OpenMode::Reply || mode == OpenMode::ReplyAll;
  const QString original = request_->Text(u"original");
  if (original.isEmpty() || (!forwards && !answers)) return;
  // The answer itself is stored; the mark is no more than a help.
  std::ignore = SetMark(context_, {original}, forwards ? kFlagForwarded : kFlagAnswered, true);
  host_.MessageStored();
}

void MessageWindow::closeEvent(QCloseEvent* event) {
  if (!closed_) closed_ = StoreForClosing();
  if (closed_ && isVisible()) KeepWindowPlacement(context_, *this, objectName());
  event->setAccepted(closed_);
}

void MessageWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::ActivationChange || !isActiveWindow() || request_ == nullptr) return;
  receipt_.AskSoon(request_);
}

void MessageWindow::KeepDraftNow() {
  FinishEditing();
  KeepDraft();
}

// A message that is being written survives a crash of the program or the machine.
void MessageWindow::KeepDraft() {
  // Also while a question stands between the button that sends and the storing.
  const bool isWritten = IsEditable() || (request_ != nullptr && request_->Flag(u"send"));
  if (!draftDue_ || !isWritten || closed_) return;
  draftDue_ = false;
  MessageModel model = CurrentModel();
  qint64 bytes = 0;
  for (const ModelAttachment& attachment : model.attachments) bytes += SizeOf(attachment);
  if (bytes > kDraftAttachmentBytes) model.attachments.clear();
  Result<QByteArray> source = Compose(model);
  if (!source) {  // the text counts, also when an attachment has vanished
    model.attachments.clear();
    source = Compose(model);
  }
  // A full disk may have room again at the next turn.
  draftDue_ = !source || !Drafts::Keep(context_, tag_, *source);
}

// Where the last one was, or beside those that are there.
void MessageWindow::TakePlace() {
  if (PlacementBag(context_, objectName())->Get(u"width").isValid()) {
    RestoreWindowPlacement(context_, *this, objectName());
  }
  QList<QPoint> taken;
  for (const QWidget* other : QApplication::topLevelWidgets()) {
    if (other != this && other->isVisible() && other->objectName() == objectName()) {
      taken.append(other->pos());
    }
  }
  const QRect screen = ScreenFit::Room(QGuiApplication::primaryScreen()->availableGeometry());
  const bool isPlaced = PlacementBag(context_, objectName())->Get(u"left").isValid();
  const QRect centred(screen.center() - QPoint(width() / 2, height() / 2), size());
  const QRect place = CascadedPlace(isPlaced ? QRect(pos(), size()) : centred, taken, screen);
  resize(place.size());
  move(place.topLeft());
}

void MessageWindow::ShowModeless() {
  if (!isVisible()) TakePlace();
  show();
  Activate();
}

void MessageWindow::ShowModal() {
  setWindowModality(Qt::ApplicationModal);
  TakePlace();
  show();
  QEventLoop loop;
  connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
  loop.exec();
}

// What waits may be sent while its window is open. What is about to wait stands in the window alone
// as long as a question is open, and what is stored is older.
void MessageWindow::MessagesChanged() {
  if (request_ == nullptr || closed_ || !IsWaiting() || doubt_->isVisible()) return;
  if (request_->Flag(u"send")) return;
  WaitingMessage waiting;
  Outbox outbox(context_, request_->Text(u"file", MailDatabasePath(context_)));
  const Result<Outbox::Reading> reading = outbox.Read(tag_, waiting);
  if (reading == Outbox::Reading::Gone) Open();
}

void MessageWindow::Activate() {
  if (isMinimized()) showNormal();
  raise();
  activateWindow();
}

}  // namespace vorn
