#include "storage/time_text.h"

namespace vorn {

QString CurrentTimeText() {
  return StoredTimeText(QDateTime::currentDateTime());
}

QString StoredTimeText(const QDateTime& time) {
  return time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
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
