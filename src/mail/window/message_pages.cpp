// The message window's pages and controls.

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QToolBar>

#include "frame/event_log.h"
#include "kit/window/access_names.h"
#include "kit/window/notice_bar.h"
#include "kit/window/page_area.h"
#include "kit/window/plain_text.h"
#include "kit/window/text_box.h"
#include "kit/window/tool_letter.h"
#include "mail/date_line.h"
#include "mail/known_addresses.h"
#include "mail/window/address_list.h"
#include "mail/window/attachment_list.h"
#include "mail/window/calendar_bar.h"
#include "mail/window/doubt_bar.h"
#include "mail/window/file_drop.h"
#include "mail/window/header_list.h"
#include "mail/window/message_body.h"
#include "mail/window/message_window.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kAddressRows = 4;
constexpr int kLeastAddressRows = 2;  // in a low window
constexpr int kReadRows = 3;
constexpr int kClipRows = 3;
constexpr int kReferenceRows = 3;

QWidget* NewPage(const QString& key) {
  auto* page = new QWidget;
  page->setObjectName(QStringLiteral("frPage"));
  page->setProperty("tag", key);
  return page;
}

void AddRow(QGridLayout* grid, int row, QLabel* label, QWidget* control) {
  label->setBuddy(control);
  grid->addWidget(label, row, 0, Qt::AlignTop);
  grid->addWidget(control, row, 1);
}

}  // namespace

void MessageWindow::BuildControls() {
  tsPage_ = new QTabWidget;
  tsPage_->setObjectName(QStringLiteral("tsPage"));
  tsPage_->setDocumentMode(true);
  tsPage_->addTab(BuildMailPage(), Ui::tr("メール"));
  tsPage_->addTab(new PageArea(BuildOptionPage()), Ui::tr("オプション"));
  doubt_ = new DoubtBar;
  connect(doubt_, &DoubtBar::SendAgainWanted, this, &MessageWindow::SendAgain);
  connect(doubt_, &DoubtBar::KeepAsSentWanted, this, &MessageWindow::KeepAsSent);
  calendar_ = new CalendarBar(context_);
  connect(calendar_, &CalendarBar::Answered, this, &MessageWindow::AnswerInvitation);
  connect(calendar_, &CalendarBar::AnswerChanged, this, &MessageWindow::ChangeAnswer);
  signed_ = new NoticeBar(QStringLiteral("frSigned"));
  auto* asDeclared = new QPushButton(Ui::tr("元の読み方に戻す(&Y)"));
  asDeclared->setObjectName(QStringLiteral("cmAsDeclared"));
  connect(asDeclared, &QPushButton::clicked, this, &MessageWindow::ReadAsDeclared);
  reading_ = new NoticeBar(QStringLiteral("frReading"), asDeclared);
  auto* whole = new QWidget;
  auto* layout = new QVBoxLayout(whole);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(doubt_);
  layout->addWidget(calendar_);
  layout->addWidget(signed_);
  layout->addWidget(reading_);
  layout->addWidget(tsPage_, 1);
  setCentralWidget(whole);

  new FileDrop(
      *this, [this](const QMimeData& given) { return given.hasUrls() && lvClip_->Takes(given); },
      [this](const QMimeData& given) { lvClip_->Take(given); });

  const auto edited = [this] { MarkEdited(); };
  connect(txSubject_, &QLineEdit::textEdited, this, edited);
  connect(txSubject_, &QLineEdit::textChanged, this, &MessageWindow::ShowCaption);
  connect(lvMailaddress_, &AddressList::Edited, this, [this] {
    MarkEdited();
    FollowSender();
  });
  connect(lvClip_, &AttachmentList::Edited, this, [this] {
    MarkEdited();
    lvClip_->setVisible(true);
    lbClip_->setVisible(true);
  });
  connect(lvHeader_, &HeaderList::Edited, this, edited);
  connect(lvMailaddress_, &AddressList::TabbedOut, this, [this] {
    QWidget* next = lvClip_->isVisible() ? lvClip_ : body_->InFront();
    next->setFocus(Qt::TabFocusReason);
  });
  connect(lvHeader_, &HeaderList::TabbedOut, this,
          [this] { txReference_->setFocus(Qt::TabFocusReason); });
  connect(body_, &MessageBody::TextEdited, this, edited);
  connect(body_, &MessageBody::TextEdited, this, &MessageWindow::CheckAnswerWords);
  connect(txReference_, &QPlainTextEdit::textChanged, this, edited);
  connect(txInReplayTo_, &QLineEdit::textEdited, this, edited);
}

QWidget* MessageWindow::BuildMailPage() {
  QWidget* page = NewPage(QStringLiteral("mail"));
  auto* grid = new QGridLayout(page);
  txSubject_ = new QLineEdit;
  txSubject_->setObjectName(QStringLiteral("txSubject"));
  AddRow(grid, 0, PlainLabel(Ui::tr("件名(&J)")), txSubject_);

  lvMailaddress_ = new AddressList([this] { return KnownAddresses(context_); });
  tbMailaddress_ = new QToolBar;
  tbMailaddress_->setObjectName(QStringLiteral("tbMailaddress"));
  NameMoreButton(*tbMailaddress_);
  ObeyLetter(tbMailaddress_->addAction(Ui::tr("選択(&L).."), this, &MessageWindow::ChooseAddresses))
      ->setToolTip(Ui::tr("アドレスブックから選びます。"));
  auto* beside = new QVBoxLayout;
  auto* label = PlainLabel(Ui::tr("アドレス(&D)"));
  label->setBuddy(lvMailaddress_);
  lvMailaddress_->setAccessibleName(Ui::tr("アドレス"));
  beside->addWidget(label);
  beside->addWidget(tbMailaddress_);
  beside->addStretch();
  grid->addLayout(beside, 1, 0);
  grid->addWidget(lvMailaddress_, 1, 1);

  lbDate_ = PlainLabel(QString());
  lbDate_->setObjectName(QStringLiteral("lbDate"));
  lbDate_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lbDateName_ = PlainLabel(Ui::tr("日時", "heading"));
  grid->addWidget(lbDateName_, 2, 0, Qt::AlignTop);
  grid->addWidget(lbDate_, 2, 1);

  lvClip_ = new AttachmentList(context_);
  connect(lvClip_, &AttachmentList::MessageOpened, this,
          [this](const QString& path) { host_.OpenMessageFile(path); });
  const int line = lvClip_->fontMetrics().lineSpacing();
  lvClip_->setMinimumHeight(line + 2 * lvClip_->frameWidth());
  lvClip_->setMaximumHeight(line * kClipRows);
  lbClip_ = PlainLabel(Ui::tr("添付(&T)"));
  AddRow(grid, 3, lbClip_, lvClip_);
  body_ = new MessageBody([this](const QMimeData& given) { return lvClip_->Take(given); });
  connect(body_, &MessageBody::MessageWanted, this,
          [this](const QString& mailto) { host_.PostMail(MailRequest::New(mailto)); });
  body_->Text()->setMinimumHeight(2 * line);
  grid->addWidget(body_, 4, 0, 1, 2);
  grid->setRowStretch(4, 1);
  return page;
}

// Who reads needs room for the text; more addresses than a few are scrolled to.
void MessageWindow::FitHead(bool editable) {
  const int line = lvMailaddress_->fontMetrics().lineSpacing();
  int height = editable ? 2 * line * kAddressRows : 2 * lvMailaddress_->frameWidth();
  const int shown = editable ? 0 : qMin(lvMailaddress_->rowCount(), kReadRows);
  for (int row = 0; row < shown; ++row) height += lvMailaddress_->rowHeight(row);
  height = qMax(height, 2 * line);
  lvMailaddress_->setMinimumHeight(editable ? 2 * line * kLeastAddressRows : height);
  lvMailaddress_->setMaximumHeight(height);
  const QString date = editable ? QString() : DateLine(source_, Request().Timestamp());
  lbDate_->setText(date);
  lbDate_->setVisible(!date.isEmpty());
  lbDateName_->setVisible(!date.isEmpty());
}

QWidget* MessageWindow::BuildOptionPage() {
  QWidget* page = NewPage(QStringLiteral("option"));
  auto* grid = new QGridLayout(page);
  lvHeader_ = new HeaderList;
  AddRow(grid, 0, PlainLabel(Ui::tr("ヘッダ(&H)")), lvHeader_);
  txReference_ = new TextBox;
  txReference_->setObjectName(QStringLiteral("txReference"));
  txReference_->setTabChangesFocus(true);
  txReference_->setFixedHeight(txReference_->fontMetrics().lineSpacing() * (kReferenceRows + 1));
  AddRow(grid, 1, PlainLabel(Ui::tr("参照(&R)")), txReference_);
  txInReplayTo_ = new QLineEdit;
  txInReplayTo_->setObjectName(QStringLiteral("txInReplayTo"));
  AddRow(grid, 2, PlainLabel(Ui::tr("返信元(&Y)")), txInReplayTo_);
  grid->setRowStretch(0, 1);
  return page;
}

// The text of a recorded event about the message.
void MessageWindow::ShowEventPage() {
  const DiskPtr event = events_.Find(Request().Event());
  if (event == nullptr || findChild<QPlainTextEdit*>(QStringLiteral("txEventLog")) != nullptr) {
    return;
  }
  QWidget* page = NewPage(QStringLiteral("event"));
  auto* box = new QPlainTextEdit(EventRecord(*event).Text());
  box->setObjectName(QStringLiteral("txEventLog"));
  box->setAccessibleName(Ui::tr("イベント"));
  box->setReadOnly(true);
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(box);
  tsPage_->addTab(page, Ui::tr("イベント"));
  lvMailaddress_->MarkNamed(EventRecord(*event).Text());
}

}  // namespace vorn
