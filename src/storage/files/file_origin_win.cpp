#include <QFile>

#include "storage/files/file_origin.h"

namespace vorn {

// The stream in which the system keeps the zone of a file; 3 is the Internet.
void MarkForeign(const QString& path, const QString&) {
  QFile stream(path + QStringLiteral(":Zone.Identifier"));
  if (stream.open(QIODevice::WriteOnly)) stream.write("[ZoneTransfer]\r\nZoneId=3\r\n");
}

}  // namespace vorn
