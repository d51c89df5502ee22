#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace vorn {

// Files that appear whole or not at all; one that was there before stays until then.

/// Ends such a file; false where it could not be written. `QSaveFile::commit` alone takes no notice
/// when the last bytes, which wait in memory, find no room on the disk.
inline bool CommitWhole(QSaveFile& file) {
  return file.flush() && file.commit();
}

/// Writes such a file; false where it could not be.
inline bool WriteWhole(const QString& path, const QByteArray& bytes) {
  QSaveFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && CommitWhole(file);
}

}  // namespace vorn
