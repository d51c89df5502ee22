#include "storage/base/time_text.h"

#include "storage/base/shown_form.h"

namespace vorn {

QString CurrentTimeText() {
  return StoredTimeText(QDateTime::currentDateTime());
}

QString StoredTimeText(const QDateTime& time) {
  // By hand, since a format that is parsed each time costs a received message 2 % of its way.
  const QDateTime local = time.toLocalTime();
  const QDate date = local.date();
  const QTime clock = local.time();
  return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d.%03d", date.year(), date.month(),
                           date.day(), clock.hour(), clock.minute(), clock.second(), clock.msec());
}

QDateTime StoredTime(const QString& stored) {
  return QDateTime::fromString(stored.left(19), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

// Only the digits are rearranged: the stored time is local, whatever zone this machine is in now.
// A local time that a zone's clock skips is invalid as a moment, yet its parts are right.
QString GeneralTimeText(const QString& stored) {
  const QDateTime time = StoredTime(stored);
  return time.date().isValid() ? time.date().toString(QStringLiteral("yyyy/MM/dd")) + u' ' +
                                     time.time().toString(QStringLiteral("H:mm:ss"))
                               : QString();
}

QString ShownTimeText(const QString& stored) {
  const QDateTime time = StoredTime(stored);
  return time.date().isValid() ? Shown(time.date(), QStringLiteral("yyyy/MM/dd")) + u' ' +
                                     Shown(time.time(), QStringLiteral("H:mm:ss"))
                               : QString();
}

QString ShortTimeText(const QString& stored, const QDate& today) {
  const QDateTime time = StoredTime(stored);
  const QDate date = time.date();
  if (!date.isValid()) return {};
  if (date == today) return Shown(time.time(), QStringLiteral("H:mm"));
  return Shown(date,
               date.year() == today.year() ? QStringLiteral("M/d") : QStringLiteral("yyyy/MM/dd"));
}

}  // namespace vorn
