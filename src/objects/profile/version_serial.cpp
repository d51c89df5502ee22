#include "objects/profile/version_serial.h"

#include <QStringList>

namespace vorn {

qint32 VersionSerialID(const QString& text) {
  QString joined;
  for (const QString& part : text.split(u'.')) joined += part.rightJustified(4, u'0');
  bool isNumber = false;
  const qint32 number = joined.toInt(&isNumber);
  return isNumber ? number : 0;
}

}  // namespace vorn
