#include "mail/window/reading_pane.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>
#include <QToolBar>
#include <utility>

#include "kit/window/access_names.h"
#include "kit/window/eliding_label.h"
#include "kit/window/icons.h"
#include "kit/window/notice_bar.h"
#include "kit/window/plain_text.h"
#include "mail/codec/calendar_summary.h"
#include "mail/codec/inline_images.h"
#include "mail/date_line.h"
#include "mail/print_page.h"
#include "mail/window/attachment_list.h"
#include "mail/window/message_body.h"
#include "mail/window/message_printing.h"
#include "mail/window/text_font.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kInSightMs = 2000;
constexpr int kPaneGap = 6;
constexpr int kPaneClipRows = 2;
constexpr qsizetype kShownAddresses = 3;

// The first ones; how many more there are is said in words.
QString Addresses(const MessageModel& model, QStringView kind) {
  QStringList texts;
  for (const AddressEntry& entry : model.addresses) {
    if (kind.compare(entry.kind, Qt::CaseInsensitive) != 0) continue;
    texts.append(IsolatedAddress(ShownInLine(entry.presentable).simplified()));
  }
  const qsizetype more = texts.size() - kShownAddresses;
  const QString shown = texts.mid(0, kShownAddresses).join(QStringLiteral(", "));
  return more > 0 ? shown + Ui::tr(" 他%1件").arg(more) : shown;
}

}  // namespace

ReadingPane::ReadingPane(Context& context, MessageHost& host)
    : context_(context),
      host_(host),
      nothing_(PlainLabel(Ui::tr("メッセージを選ぶと、ここに表示します。"))),
      message_(new QWidget),
      subject_(new ElidingLabel(QStringLiteral("lbPaneSubject"))),
      from_(new ElidingLabel(QStringLiteral("lbPaneFrom"))),
      to_(new ElidingLabel(QStringLiteral("lbPaneTo"))),
      date_(new ElidingLabel(QStringLiteral("lbPaneDate"))),
      receipt_(new NoticeBar(QStringLiteral("frReceipt"))),
      appointment_(BuildAppointment()),
      signed_(new NoticeBar(QStringLiteral("frPaneSigned"))),
      clips_(new AttachmentList(context)),
      body_(new MessageBody([](const QMimeData&) { return false; }, QStringLiteral("wbPaneHtml"))) {
  setObjectName(QStringLiteral("frReadingPane"));
  nothing_->setAlignment(Qt::AlignCenter);
  nothing_->setWordWrap(true);
  clips_->setFixedHeight(clips_->fontMetrics().lineSpacing() * (kPaneClipRows + 1));
  auto* column = new QVBoxLayout(message_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(BuildHead());
  column->addWidget(receipt_);
  column->addWidget(appointment_);
  column->addWidget(signed_);
  column->addWidget(clips_);
  column->addWidget(body_, 1);
  auto* either = new QStackedLayout(this);
  either->addWidget(nothing_);
  either->addWidget(message_);
  inSight_.setSingleShot(true);
  connect(&inSight_, &QTimer::timeout, this, &ReadingPane::Mark);
  connect(clips_, &AttachmentList::MessageOpened, this,
          [this](const QString& path) { host_.OpenMessageFile(path); });
  connect(body_, &MessageBody::MessageWanted, this,
          [this](const QString& mailto) { host_.PostMail(MailRequest::New(mailto)); });
}

QWidget* ReadingPane::BuildHead() {
  auto* head = new QWidget;
  auto* grid = new QGridLayout(head);
  grid->setContentsMargins(kPaneGap, kPaneGap / 2, kPaneGap, kPaneGap / 2);
  grid->setVerticalSpacing(2);
  QFont bold = subject_->font();
  bold.setBold(true);
  subject_->setFont(bold);
  auto* bar = new QToolBar;
  bar->setObjectName(QStringLiteral("tbPane"));
  NameMoreButton(*bar);
  const auto add = [this, bar](const QString& key, const QString& text, OpenMode mode) {
    QAction* action =
        bar->addAction(Icon(key), text, this, [this, mode] { Q_EMIT OpenWanted(mode); });
    action->setObjectName(QStringLiteral("pane_") + key);
  };
  add(QStringLiteral("replay"), Ui::tr("返信"), OpenMode::Reply);
  add(QStringLiteral("replayall"), Ui::tr("全員に返信"), OpenMode::ReplyAll);
  add(QStringLiteral("forward"), Ui::tr("転送"), OpenMode::Forward);
  add(QStringLiteral("mail"), Ui::tr("ウィンドウで開く"), OpenMode::Show);
  grid->addWidget(subject_, 0, 0);
  grid->addWidget(bar, 0, 1, 2, 1, Qt::AlignTop | Qt::AlignRight);
  grid->addWidget(from_, 1, 0);
  grid->addWidget(to_, 2, 0, 1, 2);
  grid->addWidget(date_, 3, 0, 1, 2);
  grid->setColumnStretch(0, 1);
  return head;
}

// An answer is a message that is written, which is done in a window.
NoticeBar* ReadingPane::BuildAppointment() {
  auto* open = new QPushButton(Ui::tr("ウィンドウで開く"));
  open->setObjectName(QStringLiteral("cmOpenAppointment"));
  connect(open, &QPushButton::clicked, this, [this] { Q_EMIT OpenWanted(OpenMode::Show); });
  return new NoticeBar(QStringLiteral("frAppointment"), open);
}

void ReadingPane::Show(const QString& serialId, bool marks) {
  inSight_.stop();
  if (serialId != serialId_) {
    serialId_ = serialId;
    request_ = std::make_shared<Disk>(serialId);
    request_->Let(QStringLiteral("file"), MailDatabasePath(context_));
    if (!serialId.isEmpty()) Fill(LookAtMessage(context_, *request_));
    auto& either = static_cast<QStackedLayout&>(*layout());
    either.setCurrentWidget(serialId.isEmpty() ? nothing_ : message_);
  }
  marks_ = marks && !serialId_.isEmpty() && receipt_->isHidden();
  if (marks_ && !isCovered_) inSight_.start(kInSightMs);
}

void ReadingPane::Cover(bool covered) {
  if (std::exchange(isCovered_, covered) == covered) return;
  if (covered) inSight_.stop();
  if (!covered && marks_) inSight_.start(kInSightMs);
}

void ReadingPane::Fill(const OpenedMessage& opened) {
  model_ = opened.model;
  source_ = opened.source;
  html_ = opened.html;
  ShowHead();
  const bool asks = request_->Flag(u"notice");
  receipt_->Say(
      asks
          ? Ui::tr("差出人が開封の通知を求めています。ウィンドウで開くと、送るかどうかを選べます。")
          : QString());
  appointment_->Say(CalendarSummary(opened.calendar, false).isEmpty()
                        ? QString()
                        : Ui::tr("このメールには予定があります。ウィンドウで開くと、招待に"
                                 "返事をしたり、カレンダー用に保存したりできます。"));
  signed_->Say(opened.signature);
  // The HTML part stands below, in its tab.
  std::erase_if(model_.attachments, [this](const ModelAttachment& attachment) {
    return !html_.isEmpty() && !attachment.isNew && !attachment.record.hasName &&
           attachment.record.type == u"text/html";
  });
  clips_->Show(model_.attachments, source_, false);
  clips_->setVisible(!model_.attachments.empty());
  LazyText text = model_.text;
  if (opened.unreadable) {
    text = Ui::tr("メッセージ%1を読み込めません。").arg(opened.unreadable->Name()) +
           opened.reason.text;
  } else if (!opened.found) {
    text = Ui::tr("メッセージがありません。");
  }
  body_->UseFont(TextFont(context_, TextUse::Read));
  const auto html = [this] { return WithInlineImages(html_, source_, request_->Text(u"content")); };
  body_->Show(text, false, html_.isEmpty() ? std::function<QString()>() : html,
              IsHtmlFirst(context_, model_) ? MessageBody::Front::Html : MessageBody::Front::Text);
}

void ReadingPane::ShowHead() {
  const QString copies = Addresses(model_, u"CC");
  const QString subject = WithoutHidden(model_.subject).trimmed();
  subject_->Say({}, !HasVisible(subject) ? Ui::tr("（件名なし）") : subject);
  from_->SayShown(Ui::tr("差出人："), Addresses(model_, u"FROM"));
  to_->SayShown(Ui::tr("宛て先："),
                Addresses(model_, u"TO") +
                    (copies.isEmpty() ? QString() : QStringLiteral("  CC: ") + copies));
  date_->Say(Ui::tr("日時："), DateLine(source_, request_->Text(u"work_timestamp")));
}

void ReadingPane::Print() {
  PrintMessagePage(context_, window(), host_, PrintPage(model_, body_->HtmlInFront()));
}

void ReadingPane::Mark() {
  marks_ = false;
  if (!isVisible() || window()->isMinimized()) return;
  if (MarkOpened(context_, *request_)) Q_EMIT Marked();
}

}  // namespace vorn
