#include "mail/window/message_window.h"

#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPlainTextEdit>

namespace vorn {
namespace {

constexpr int kRowsShown = 3;

QString KindLabel(const QString& kind) {
  const QString upper = kind.toUpper();
  if (upper == u"FROM") return QStringLiteral("差出人");
  if (upper == u"TO") return QStringLiteral("宛先");
  if (upper == u"CC") return QStringLiteral("CC");
  if (upper == u"BC") return QStringLiteral("BCC");
  if (upper == u"RE") return QStringLiteral("返信先");
  if (upper == u"NO") return QStringLiteral("開封通知先");
  return upper;
}

QListWidget* NewList(const QString& name) {
  auto* list = new QListWidget;
  list->setObjectName(name);
  list->setMaximumHeight(list->fontMetrics().lineSpacing() * kRowsShown + 12);
  return list;
}

}  // namespace

MessageWindow::MessageWindow(Context& context) : context_(context) {
  setObjectName(QStringLiteral("Mail"));
  setAttribute(Qt::WA_DeleteOnClose);
  resize(720, 560);
  BuildControls();
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
  txSubject_->setReadOnly(true);
  addRow(0, QStringLiteral("件名(&S)"), txSubject_);
  lvMailaddress_ = NewList(QStringLiteral("lvMailaddress"));
  addRow(1, QStringLiteral("アドレス(&D)"), lvMailaddress_);
  lvClip_ = NewList(QStringLiteral("lvClip"));
  lbClip_ = addRow(2, QStringLiteral("添付(&T)"), lvClip_);

  txMemo_ = new QPlainTextEdit;
  txMemo_->setObjectName(QStringLiteral("txMemo"));
  txMemo_->setAccessibleName(QStringLiteral("本文"));
  txMemo_->setReadOnly(true);
  txMemo_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  txMemo_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  grid->addWidget(txMemo_, 3, 0, 1, 2);
  grid->setRowStretch(3, 1);
  setCentralWidget(center);

  auto* menuFile = menuBar()->addMenu(QStringLiteral("ファイル(&F)"));
  menuFile->setObjectName(QStringLiteral("menuFile"));
  auto* closing = menuFile->addAction(QStringLiteral("閉じる(&X)"), this, &QWidget::close);
  closing->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)});
  txMemo_->setFocus();
}

bool MessageWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  request_ = request;
  tag_ = request->SerialID();
  Fill(OpenMessage(context_, *request));
  return true;
}

void MessageWindow::Fill(const OpenedMessage& message) {
  const QString subject =
      message.model.subject.isEmpty() ? QStringLiteral("(件名なし)") : message.model.subject;
  setWindowTitle(message.found ? subject : QStringLiteral("メッセージ"));
  txSubject_->setText(message.model.subject);
  txSubject_->setCursorPosition(0);
  lvMailaddress_->clear();
  for (const AddressEntry& address : message.model.addresses) {
    lvMailaddress_->addItem(KindLabel(address.kind) + QStringLiteral(": ") + address.presentable);
  }
  lvClip_->clear();
  for (const ModelAttachment& attachment : message.model.attachments)
    lvClip_->addItem(attachment.name);
  lvClip_->setVisible(lvClip_->count() > 0);
  lbClip_->setVisible(lvClip_->count() > 0);
  txMemo_->setPlainText(message.found ? message.model.text
                                      : QStringLiteral("メッセージを読み込めません。") +
                                            context_.Data.LastError().text);
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
