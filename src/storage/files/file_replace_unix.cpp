#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <cstdio>

#include "storage/files/file_replace.h"

namespace vorn {
namespace {

bool Sync(const QString& path, int flags) {
  const int file = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
  if (file < 0) return false;
  // Some file systems refuse to sync a folder; they have nothing to sync there.
  const bool synced = ::fsync(file) == 0 || errno == EINVAL;
  ::close(file);
  return synced;
}

}  // namespace

Placing PlaceNewFile(const QString& from, const QString& to) {
  const QByteArray source = QFile::encodeName(from);
  const QByteArray target = QFile::encodeName(to);
#ifdef RENAME_NOREPLACE
  if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) ==
      0) {
    return Placing::Done;
  }
  if (errno == EEXIST) return Placing::Exists;
#endif
  // A second name for the file is refused too when the name is taken.
  if (::link(source.constData(), target.constData()) == 0) {
    ::unlink(source.constData());
    return Placing::Done;
  }
  return errno == EEXIST ? Placing::Exists : Placing::Failed;
}

bool SyncFile(const QString& path) {
  return Sync(path, O_RDONLY);
}

bool SyncFolder(const QString& folder) {
  return Sync(folder, O_RDONLY | O_DIRECTORY);
}

}  // namespace vorn
