#include "mail/window/message_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QToolBar>

#include "frame/start_up.h"
#include "frame/window/icons.h"
#include "mail/compose_message.h"
#include "mail/mail_store.h"
#include "mail/mime_codec.h"
#include "mail/window/address_list.h"
#include "objects/settings.h"

namespace vorn {
namespace {

constexpr int kRowsShown = 4;
const QString kProcess = QStringLiteral("process");

QByteArray ReadAttachment(const ModelAttachment& attachment, const QByteArray& source) {
  const MimeCodec::ContentRecord& record = attachment.record;
  return MimeCodec::DecodePart(source, MimeCodec::TransferEncodingOf(record.encoding.toLatin1()),
                               record.first, record.last);
}

bool HasKind(const QList<AddressEntry>& addresses, std::initializer_list<QStringView> kinds) {
  return std::any_of(addresses.begin(), addresses.end(), [&kinds](const AddressEntry& entry) {
    return std::find(kinds.begin(), kinds.end(), QStringView(entry.kind)) != kinds.end();
  });
}

}  // namespace

MessageWindow::MessageWindow(Context& context, MessageHost& host) : context_(context), host_(host) {
  setObjectName(QStringLiteral("Mail"));
  setWindowIcon(Icon(QStringLiteral("mail")));
  setAttribute(Qt::WA_DeleteOnClose);
  resize(720, 560);
  BuildControls();
  BuildCommands();
}

void MessageWindow::BuildControls() {
  auto* center = new QWidget(this);
  auto* grid = new QGridLayout(center);
  const auto addRow = [grid](int row, const QString& text, QWidget* control) {
    auto* label = new QLabel(text);
    label->setBuddy(control);
    grid->addWidget(label, row, 0, Qt::AlignTop);
    grid->addWidget(control, row, 1);
    return label;
  };
  txSubject_ = new QLineEdit;
  txSubject_->setObjectName(QStringLiteral("txSubject"));
  addRow(0, QStringLiteral("件名(&J)"), txSubject_);
  lvMailaddress_ = new AddressList;
  lvMailaddress_->setFixedHeight(lvMailaddress_->fontMetrics().lineSpacing() * 2 * kRowsShown);
  addRow(1, QStringLiteral("アドレス(&D)"), lvMailaddress_);
  lvClip_ = new QListWidget;
  lvClip_->setObjectName(QStringLiteral("lvClip"));
  lvClip_->setFixedHeight(lvClip_->fontMetrics().lineSpacing() * kRowsShown);
  lbClip_ = addRow(2, QStringLiteral("添付(&T)"), lvClip_);

  txMemo_ = new QPlainTextEdit;
  txMemo_->setObjectName(QStringLiteral("txMemo"));
  txMemo_->setAccessibleName(QStringLiteral("本文"));
  txMemo_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  grid->addWidget(txMemo_, 3, 0, 1, 2);
  grid->setRowStretch(3, 1);
  setCentralWidget(center);
  const auto edited = [this] { edited_ = true; };
  connect(txSubject_, &QLineEdit::textEdited, this, edited);
  connect(lvMailaddress_, &AddressList::Edited, this, edited);
  connect(txMemo_, &QPlainTextEdit::textChanged, this, edited);
}

void MessageWindow::BuildCommands() {
  tbMenu_ = addToolBar(QStringLiteral("コマンド"));
  tbMenu_->setObjectName(QStringLiteral("tbMenu"));
  tbMenu_->setMovable(false);
  tbMenu_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  auto* menu = menuBar()->addMenu(QStringLiteral("ファイル(&F)"));
  menu->setObjectName(QStringLiteral("menuFiles"));
  const auto add = [this, menu](const QString& name, const QString& text, auto command) {
    QAction* action = menu->addAction(text, this, command);
    action->setObjectName(name);
    return action;
  };
  send_ = add(QStringLiteral("mailup"), QStringLiteral("送信(&S)"), &MessageWindow::SendClicked);
  send_->setIcon(Icon(QStringLiteral("mailup")));
  send_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
  menu->addSeparator();
  answers_ = {add(QStringLiteral("replay"), QStringLiteral("送信者に返信(&R)"),
                  [this] { TurnInto(static_cast<int>(OpenMode::Reply)); }),
              add(QStringLiteral("replayall"), QStringLiteral("関係者に返信(&A)"),
                  [this] { TurnInto(static_cast<int>(OpenMode::ReplyAll)); }),
              add(QStringLiteral("forward"), QStringLiteral("転送(&F)"),
                  [this] { TurnInto(static_cast<int>(OpenMode::Forward)); })};
  menu->addSeparator();
  add(QStringLiteral("close"), QStringLiteral("閉じる(&X)"), &MessageWindow::close)
      ->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)});
  tbMenu_->addAction(send_);
  for (QAction* action : std::as_const(answers_)) tbMenu_->addAction(action);
}

bool MessageWindow::IsEditable() const {
  return qAbs(request_->Number(kProcess, kStatusEdit)) == kStatusEdit;
}

bool MessageWindow::IsWaiting() const {
  return qAbs(request_->Number(kProcess, kStatusEdit)) == kStatusWaiting;
}

bool MessageWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  request_ = request;
  Open();
  return true;
}

void MessageWindow::Open() {
  Fill(OpenMessage(context_, *request_));
  tag_ = request_->SerialID();
}

void MessageWindow::Fill(const OpenedMessage& opened) {
  model_ = opened.model;
  source_ = opened.source;
  const bool editable = IsEditable();
  const bool isMissing = !opened.found && !request_->Flag(u"new");
  setWindowTitle(!model_.subject.isEmpty() ? model_.subject
                 : editable                ? QStringLiteral("メッセージの作成")
                                           : QStringLiteral("(件名なし)"));
  txSubject_->setText(model_.subject);
  txSubject_->setCursorPosition(0);
  txSubject_->setReadOnly(!editable);
  lvMailaddress_->Show(model_.addresses, editable);
  lvClip_->clear();
  for (const ModelAttachment& attachment : model_.attachments) lvClip_->addItem(attachment.name);
  lvClip_->setVisible(lvClip_->count() > 0);
  lbClip_->setVisible(lvClip_->count() > 0);
  txMemo_->setReadOnly(!editable);
  txMemo_->setTextInteractionFlags(editable
                                       ? Qt::TextEditorInteraction
                                       : Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  txMemo_->setPlainText(isMissing ? QStringLiteral("メッセージを読み込めません。") +
                                        context_.Data.LastError().text
                                  : model_.text);
  ControlToolbarUpdate();
  txMemo_->setFocus();
  edited_ = false;
}

void MessageWindow::ControlToolbarUpdate() {
  send_->setVisible(IsEditable() || IsWaiting());
  send_->setText(IsWaiting() ? QStringLiteral("送信をキャンセル(&S)") : QStringLiteral("送信(&S)"));
  for (QAction* action : std::as_const(answers_)) action->setVisible(!IsEditable());
}

void MessageWindow::TurnInto(int openMode) {
  request_->Let(QStringLiteral("open"), openMode);
  request_->Let(QStringLiteral("new"), true);
  Open();
}

QString MessageWindow::MissingForSending() const {
  const QList<AddressEntry> addresses = lvMailaddress_->Addresses();
  if (!HasKind(addresses, {u"TO", u"CC", u"BC"})) {
    return QStringLiteral("宛て先(TO,CC,BCC)が不明です。送信するには宛て先を指定して下さい。");
  }
  if (!HasKind(addresses, {u"FROM"})) {
    return QStringLiteral("送信者(FROM)が不明です。送信するには送信者を指定して下さい。");
  }
  return {};
}

void MessageWindow::CancelSending() {
  const auto answer = QMessageBox::question(
      this, kApplicationTitle,
      QStringLiteral("メッセージの送信をキャンセルして、編集できるようにします。よろしいですか？"),
      QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  const int sign = request_->Number(kProcess) < 0 ? -1 : 1;
  request_->Let(kProcess, sign * kStatusEdit);
  MailStore(context_).UpdateMessageState(kStateStatus, *request_, true);
  Open();
}

void MessageWindow::SendClicked() {
  if (IsWaiting()) {
    CancelSending();
    return;
  }
  const QString missing = MissingForSending();
  if (!missing.isEmpty()) {
    QMessageBox::information(this, kApplicationTitle, missing);
    lvMailaddress_->setFocus();
    return;
  }
  if (txSubject_->text().isEmpty() &&
      QMessageBox::question(this, kApplicationTitle,
                            QStringLiteral("件名が設定されていません。送信してよろしいですか？")) !=
          QMessageBox::Yes) {
    return;
  }
  sending_ = true;
  request_->Let(kProcess, static_cast<int>(kStatusWaiting));
  if (!close()) {
    sending_ = false;
    request_->Let(kProcess, static_cast<int>(kStatusEdit));
  }
}

bool MessageWindow::AskToSave(bool* cancelled) {
  const auto answer = QMessageBox::question(
      this, kApplicationTitle, QStringLiteral("このメッセージを保存します。よろしいですか？"),
      QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
  *cancelled = answer == QMessageBox::Cancel;
  return answer == QMessageBox::Yes;
}

bool MessageWindow::Store() {
  model_.subject = txSubject_->text();
  model_.addresses = lvMailaddress_->Addresses();
  model_.text = txMemo_->toPlainText();
  ComposeOptions options;
  options.settings = EditSettings::From(*Settings(context_));
  options.boundaryToken = context_.Data.NewSerialID();
  options.read = [this](const ModelAttachment& attachment) {
    return ReadAttachment(attachment, source_);
  };
  const QByteArray source = ComposeMessage(model_, options);
  if (!MailStore(context_).StoreMessage(*request_, source).isEmpty()) {
    host_.MessageStored();
    return true;
  }
  QMessageBox::critical(
      this, kApplicationTitle,
      QStringLiteral("メッセージを保存できません。") + context_.Data.LastError().text);
  return false;
}

void MessageWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  if (request_ == nullptr || (!IsEditable() && !sending_)) return;
  if (!sending_) {
    if (!edited_) return;
    bool cancelled = false;
    const bool save = !request_->Flag(u"new") || AskToSave(&cancelled);
    if (cancelled) event->ignore();
    if (cancelled || !save) return;
  }
  if (!Store()) {
    event->ignore();  // the text stays
  } else if (sending_) {
    host_.SendMessage(request_->SerialID());
  }
}

void MessageWindow::ShowModeless() {
  show();
  Activate();
}

void MessageWindow::ShowModal() {
  setWindowModality(Qt::ApplicationModal);
  show();
  QEventLoop loop;
  connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
  loop.exec();
}

void MessageWindow::Activate() {
  if (isMinimized()) showNormal();
  raise();
  activateWindow();
}

}  // namespace vorn
