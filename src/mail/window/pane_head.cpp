#include "mail/window/pane_head.h"

#include <QGridLayout>
#include <QToolBar>

#include "kit/window/access_names.h"
#include "kit/window/eliding_label.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "mail/date_line.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kHeadGap = 6;
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

PaneHead::PaneHead()
    : subject_(new ElidingLabel(QStringLiteral("lbPaneSubject"))),
      from_(new ElidingLabel(QStringLiteral("lbPaneFrom"))),
      to_(new ElidingLabel(QStringLiteral("lbPaneTo"))),
      date_(new ElidingLabel(QStringLiteral("lbPaneDate"))) {
  QFont bold = subject_->font();
  bold.setBold(true);
  subject_->setFont(bold);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(kHeadGap, kHeadGap / 2, kHeadGap, kHeadGap / 2);
  grid->setVerticalSpacing(2);
  grid->addWidget(subject_, 0, 0);
  grid->addWidget(BuildToolbar(), 0, 1, 2, 1, Qt::AlignTop | Qt::AlignRight);
  grid->addWidget(from_, 1, 0);
  grid->addWidget(to_, 2, 0);
  grid->addWidget(date_, 2, 1);
  grid->setColumnStretch(0, 3);
  grid->setColumnStretch(1, 2);
}

QWidget* PaneHead::BuildToolbar() {
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
  date_->Say(Ui::tr("日時："), DateLine(source, storedTime));
}

}  // namespace vorn
