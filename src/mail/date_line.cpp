#include "mail/date_line.h"

#include "mail/codec/mime/message_date.h"
#include "storage/base/shown_form.h"
#include "storage/base/time_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qint64 kDayS = 86400;

QString ZoneText(int seconds) {
  const int minutes = qAbs(seconds) / 60;
  return QString::asprintf("%c%02d%02d", seconds < 0 ? '-' : '+', minutes / 60, minutes % 60);
}

}  // namespace

QString DateLine(QByteArrayView source) {
  const QDateTime sent = SentDate(source);
  if (!sent.isValid()) return {};
  const QDateTime here = sent.toLocalTime();
  const QString zone = QStringLiteral(" (") + ZoneText(sent.offsetFromUtc()) + u')';
  QString line = Shown(here, QStringLiteral("yyyy/MM/dd H:mm"));
  if (here.offsetFromUtc() == sent.offsetFromUtc()) {
    line += zone;
  } else {
    const bool isSameDay = here.date() == sent.date();
    line += Ui::tr("（差出人 %1）")
                .arg(Shown(sent, isSameDay ? QStringLiteral("H:mm") : QStringLiteral("M/d H:mm")) +
                     zone);
  }
  return line;
}

QString ArrivalNote(QByteArrayView source, const QString& stored) {
  const QDateTime sent = SentDate(source);
  const QDateTime arrived = StoredTime(stored);
  if (!sent.isValid() || !arrived.isValid() || qAbs(sent.secsTo(arrived)) <= kDayS) return {};
  return Ui::tr("届いた日時 %1 と1日以上違います。").arg(ShownTimeText(stored));
}

}  // namespace vorn
