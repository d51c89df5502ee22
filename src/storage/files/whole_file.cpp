#include "storage/files/whole_file.h"

#include <QSaveFile>

namespace vorn {

bool FinishFile(QSaveFile& file) {
  if (file.flush() && file.error() == QFileDevice::NoError) return file.commit();
  file.cancelWriting();
  return false;
}

bool WriteWhole(const QString& path, const QByteArray& bytes) {
  QSaveFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && FinishFile(file);
}

}  // namespace vorn
