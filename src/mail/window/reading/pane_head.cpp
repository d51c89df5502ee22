#include "mail/window/reading/pane_head.h"

#include <QGridLayout>
#include <QLabel>
#include <QToolBar>
#include <initializer_list>

#include "kit/window/access_names.h"
#include "kit/window/eliding_label.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "mail/date_line.h"
#include "mail/shown_addresses.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kHeadGap = 6;
constexpr int kColumnGap = 12;
constexpr int kWideEms = 52;  // correspondents side by side can be read from here on
constexpr int kIconSize = 20;
constexpr qsizetype kShownAddresses = 3;

// The first ones; how many more there are is said in words.
QString Addresses(const MessageModel& model, QStringView kind) {
  const QStringList texts = ShownAddresses(model.addresses, kind);
  const qsizetype more = texts.size() - kShownAddresses;
  const QString shown = texts.mid(0, kShownAddresses).join(QStringLiteral(", "));
  return more > 0 ? shown + Ui::tr(" 他%1件").arg(more) : shown;
}

}  // namespace

PaneHead::PaneHead()
    : subject_(new ElidingLabel(QStringLiteral("lbPaneSubject"))),
      from_(new ElidingLabel(QStringLiteral("lbPaneFrom"))),
      to_(new ElidingLabel(QStringLiteral("lbPaneTo"))),
      date_(PlainLabel()),
      note_(PlainLabel()),
      toolbar_(BuildToolbar()),
      grid_(new QGridLayout(this)) {
  date_->setObjectName(QStringLiteral("lbPaneDate"));
  note_->setObjectName(QStringLiteral("lbPaneNote"));
  note_->setWordWrap(true);
  note_->hide();
  QFont bold = subject_->font();
  bold.setBold(true);
  subject_->setFont(bold);
  grid_->setContentsMargins(kHeadGap, kHeadGap / 2, kHeadGap, kHeadGap / 2);
  grid_->setVerticalSpacing(0);
  grid_->setHorizontalSpacing(kColumnGap);
  grid_->setColumnStretch(0, 3);
  grid_->setColumnStretch(1, 2);
  Lay(true);
}

// Either of both, whose places differ, takes its widgets to the other ones.
void PaneHead::Lay(bool isWide) {
  for (QLabel* label : std::initializer_list<QLabel*>{subject_, from_, to_, date_, note_}) {
    grid_->removeWidget(label);
  }
  grid_->addWidget(subject_, 0, 0, 1, isWide ? 1 : 2);
  grid_->addWidget(date_, isWide ? 0 : 3, isWide ? 1 : 0, 1, isWide ? 1 : 3);
  grid_->addWidget(toolbar_, 0, 2, isWide ? 2 : 1, 1);
  grid_->addWidget(from_, 1, 0, 1, isWide ? 1 : 3);
  grid_->addWidget(to_, isWide ? 1 : 2, isWide ? 1 : 0, 1, isWide ? 1 : 3);
  grid_->addWidget(note_, isWide ? 2 : 4, 0, 1, 3);
  date_->setWordWrap(!isWide);  // beside the subject it takes the width that it needs
  isWide_ = isWide;
}

// Beside the subject the date takes no more than half of the room.
void PaneHead::Fit() {
  const int room = width() - toolbar_->sizeHint().width();
  const int date = date_->fontMetrics().horizontalAdvance(date_->text());
  const bool isWide =
      width() >= fontMetrics().horizontalAdvance(u'M') * kWideEms && 2 * date <= room;
  if (isWide != isWide_) Lay(isWide);
}

void PaneHead::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Fit();
}

QToolBar* PaneHead::BuildToolbar() {
  auto* bar = new QToolBar;
  bar->setObjectName(QStringLiteral("tbPane"));
  bar->setIconSize({kIconSize, kIconSize});
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
  return bar;
}

void PaneHead::Show(const MessageModel& model, const QByteArray& source,
                    const QString& storedTime) {
  const QString copies = Addresses(model, u"CC");
  const QString subject = WithoutHidden(model.subject).trimmed();
  subject_->Say({}, !HasVisible(subject) ? Ui::tr("（件名なし）") : subject);
  from_->SayShown(Ui::tr("差出人："), Addresses(model, u"FROM"));
  to_->SayShown(
      Ui::tr("宛て先："),
      Addresses(model, u"TO") + (copies.isEmpty() ? QString() : QStringLiteral("  CC: ") + copies));
  const QString date = DateLine(source);
  const QString note = ArrivalNote(source, storedTime);
  date_->setText(Ui::tr("日時：") + ShownText(date));
  date_->setVisible(!date.isEmpty());
  note_->setText(note);
  note_->setVisible(!note.isEmpty());
  Fit();
}

}  // namespace vorn
