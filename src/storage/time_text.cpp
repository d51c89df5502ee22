#include "storage/time_text.h"

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

QString GeneralTimeText(const QString& stored) {
  // Only the digits are rearranged: the stored time is local, whatever zone this machine is in now.
  const QDateTime time =
      QDateTime::fromString(stored.left(19), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
  // A local time that a zone's clock skips is invalid as a moment, yet its parts are right.
  return time.date().isValid() ? time.date().toString(QStringLiteral("yyyy/MM/dd")) + u' ' +
                                     time.time().toString(QStringLiteral("H:mm:ss"))
                               : QString();
}

}  // namespace vorn
