#include "mail/window/reading/reading_pane.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>

#include "kit/window/notice_bar.h"
#include "kit/window/plain_text.h"
#include "mail/attached_pictures.h"
#include "mail/codec/calendar/calendar_summary.h"
#include "mail/codec/mime/inline_images.h"
#include "mail/mail_request_bag.h"
#include "mail/refusal_notice.h"
#include "mail/store/message_bag.h"
#include "mail/window/body/message_body.h"
#include "mail/window/body/text_font.h"
#include "mail/window/fields/clip_row.h"
#include "mail/window/host/cancelled_sending.h"
#include "mail/window/host/message_printing.h"
#include "mail/window/reading/pane_head.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kLeastLines = 6;

// Of HTML alone the settings say how it is read.
bool HasHtmlAndText(const OpenedMessage& opened) {
  return !opened.html.isEmpty() && !opened.model.isTextOfHtml;
}

}  // namespace

ReadingPane::ReadingPane(Context& context, MessageHost& host)
    : context_(context),
      host_(host),
      nothing_(PlainLabel(Ui::tr("メッセージを選ぶと、ここに表示します。"))),
      message_(new QWidget),
      head_(new PaneHead),
      refused_(BuildRefusal()),
      receipt_(new NoticeBar(QStringLiteral("frReceipt"))),
      appointment_(BuildAppointment()),
      signed_(new NoticeBar(QStringLiteral("frPaneSigned"))),
      clips_(new ClipRow(context)),
      body_(new MessageBody([](const QMimeData&) { return false; }, QStringLiteral("wbPaneHtml"))) {
  setObjectName(QStringLiteral("frReadingPane"));
  Lay();
  connect(head_, &PaneHead::OpenWanted, this, &ReadingPane::OpenWanted);
  connect(&inSight_, &SightTimer::HasBeenSeen, this, &ReadingPane::Mark);
  connect(&clips_->Clips(), &AttachmentList::MessageOpened, this,
          [this](const QString& path) { host_.OpenMessageFile(path); });
  body_->GiveKeys();
  connect(body_, &MessageBody::Entered, this, [this] { Q_EMIT OpenWanted(OpenMode::Show); });
  connect(body_, &MessageBody::Left, this, &ReadingPane::Left);
  connect(body_, &MessageBody::FrontChanged, &clips_->Clips(), &AttachmentList::FoldShown);
  connect(body_, &MessageBody::FrontChosen, this, [this](bool isHtml) {
    if (HasHtmlAndText(opened_)) host_.PreferHtml(isHtml);
  });
  connect(body_, &MessageBody::MessageWanted, this,
          [this](const QString& mailto) { host_.PostMail(MailRequest::New(mailto)); });
}

void ReadingPane::Lay() {
  nothing_->setAlignment(Qt::AlignCenter);
  nothing_->setWordWrap(true);
  auto* column = new QVBoxLayout(message_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(head_);
  column->addWidget(refused_);
  column->addWidget(receipt_);
  column->addWidget(appointment_);
  column->addWidget(signed_);
  column->addWidget(clips_->Lines());
  column->addWidget(body_, 1);
  body_->PutBeside(clips_);
  auto* either = new QStackedLayout(this);
  either->addWidget(nothing_);
  either->addWidget(message_);
  // Whatever a message brings along, the list keeps its room.
  setMinimumHeight(fontMetrics().lineSpacing() * kLeastLines);
}

// An answer is a message that is written, which is done in a window.
NoticeBar* ReadingPane::BuildAppointment() {
  auto* open = new QPushButton(Ui::tr("ウィンドウで開く"));
  open->setObjectName(QStringLiteral("cmOpenAppointment"));
  connect(open, &QPushButton::clicked, this, [this] { Q_EMIT OpenWanted(OpenMode::Show); });
  return new NoticeBar(QStringLiteral("frAppointment"), open);
}

NoticeBar* ReadingPane::BuildRefusal() {
  auto* open = new QPushButton(Ui::tr("開いて編集.."));
  open->setObjectName(QStringLiteral("cmOpenRefused"));
  connect(open, &QPushButton::clicked, this, &ReadingPane::Mend);
  return new NoticeBar(QStringLiteral("frPaneRefused"), open);
}

// A window that shows it already becomes one in which it is edited.
void ReadingPane::Mend() {
  const DiskPtr request = NewRequest();
  LookAtMessage(context_, *request);  // it may be edited already
  if (MessageBag(*request).Status() == kStatusWaiting) {
    const bool isCancelled = CancelSending(context_, *window(), *request);
    host_.MessageStored();
    // While that was told another message may have come here.
    if (!isCancelled || request->Serial() != serialId_) return;
  }
  Q_EMIT OpenWanted(OpenMode::Show);
}

void ReadingPane::Show(const SerialId& serialId, bool marks) {
  if (serialId != serialId_) {
    serialId_ = serialId;
    request_ = NewRequest();
    if (!serialId.IsEmpty()) {
      opened_ = LookAtMessage(context_, *request_);
      Fill();
    }
    auto& either = static_cast<QStackedLayout&>(*layout());
    either.setCurrentWidget(serialId.IsEmpty() ? nothing_ : message_);
  }
  inSight_.Begin(marks && !serialId_.IsEmpty() && !MailRequestBag(*request_).AsksForReceipt());
}

DiskPtr ReadingPane::NewRequest() const {
  auto request = std::make_shared<Disk>(serialId_);
  MessageBag::SetFile(*request, MailDatabasePath(context_));
  return request;
}

void ReadingPane::FollowEdits() {
  if (serialId_.IsEmpty() || MessageBag(*request_).Status() == kStatusReceived) return;
  ShowRefusal();
  const DiskPtr request = NewRequest();
  OpenedMessage now = LookAtMessage(context_, *request);
  if (now.source.isEmpty() || now.source == opened_.source) return;
  request_ = request;
  opened_ = std::move(now);
  Fill();
}

void ReadingPane::ShowRefusal() {
  const MessageStatus status = MessageBag(*request_).Status();
  const bool isUnsent = status == kStatusWaiting || status == kStatusEdit;
  refused_->Say(isUnsent ? RefusalNotice(context_, MailDatabasePath(context_), serialId_)
                         : QString());
}

void ReadingPane::Fill() {
  ShowRefusal();
  head_->Show(opened_.model, opened_.source, MailRequestBag(*request_).Timestamp());
  const bool asks = MailRequestBag(*request_).AsksForReceipt();
  receipt_->Say(
      asks
          ? Ui::tr("差出人が開封の通知を求めています。ウィンドウで開くと、送るかどうかを選べます。")
          : QString());
  appointment_->Say(CalendarSummary(opened_.calendar, false).isEmpty()
                        ? QString()
                        : Ui::tr("このメールには予定があります。ウィンドウで開くと、招待に"
                                 "返事をしたり、カレンダー用に保存したりできます。"));
  signed_->Say(opened_.signature);
  opened_.model.attachments = WithoutHtmlPart(opened_);
  clips_->Show(opened_.model.attachments, opened_.source, opened_.shownImages);
  LazyText text = opened_.model.text;
  if (opened_.unreadable) {
    text = Ui::tr("メッセージ%1を読み込めません。").arg(opened_.unreadable->Name()) +
           opened_.reason.text;
  } else if (!opened_.found) {
    text = Ui::tr("メッセージがありません。");
  }
  body_->UseFont(TextFont(context_, FontUse::Read));
  HtmlPart html = PartToRead(context_, opened_, [this] {
    return WithInlineImages(opened_.html, opened_.source, MailRequestBag(*request_).ContentIndex());
  });
  if (HasHtmlAndText(opened_)) html.isFirst = host_.PrefersHtml();
  body_->Show(text, false, html);
}

void ReadingPane::Print() {
  PrintMessagePage(context_, window(), host_, opened_.model, body_->HtmlInFront());
}

void ReadingPane::Mark() {
  if (!isVisible() || window()->isMinimized()) return;
  if (MarkOpened(context_, *request_).ValueOr(false)) Q_EMIT Marked();
}

}  // namespace vorn
