#include <sys/stat.h>

#include <QFile>

#include "storage/files/file_identity.h"

namespace vorn {

QString FileIdentity(const QString& path) {
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return {};
  return QString::number(status.st_dev, 16) + u':' + QString::number(status.st_ino, 16);
}

}  // namespace vorn
