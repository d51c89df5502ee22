#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>

#include "storage/files/file_lock.h"

namespace vorn {

bool FileLock::OpenFile() {
  handle_ = ::open(QFile::encodeName(path_).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  return handle_ != -1;
}

FileLock::Result FileLock::TryTake(Kind kind) {
  const int operation = kind == Kind::Shared ? LOCK_SH : LOCK_EX;
  if (::flock(static_cast<int>(handle_), operation | LOCK_NB) == 0) return Result::Taken;
  return errno == EWOULDBLOCK || errno == EINTR ? Result::Held : Result::Failed;
}

void FileLock::Release() {
  if (handle_ != -1) ::close(static_cast<int>(handle_));
  handle_ = -1;
  held_ = false;
}

}  // namespace vorn
