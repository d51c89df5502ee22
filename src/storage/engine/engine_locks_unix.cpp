#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <cstdarg>
#include <map>
#include <mutex>
#include <utility>

#include "storage/engine/engine.h"
#include "storage/engine/engine_locks.h"

#ifdef F_OFD_SETLK

namespace vorn {
namespace {

// The engine has several descriptors of a file and takes their locks for those of the process. So
// one descriptor more, known to nobody else, holds the locks of all of them.
class LockHolders {
 public:
  static LockHolders& Instance() {
    static LockHolders holders;
    return holders;
  }

  /// -1 when there can be none, as without /proc.
  int Of(int file) {
    Inode inode;
    if (!Find(file, inode)) return -1;
    const std::lock_guard<std::mutex> guard(mutex_);
    const auto known = holders_.find(inode);
    if (known != holders_.end()) return known->second;
    const QByteArray name = "/proc/self/fd/" + QByteArray::number(file);
    int holder = ::open(name.constData(), O_RDWR | O_CLOEXEC);
    if (holder == -1) holder = ::open(name.constData(), O_RDONLY | O_CLOEXEC);
    if (holder != -1) holders_.emplace(inode, holder);
    return holder;
  }

  /// The engine keeps its descriptors open as long as it holds a lock on their file.
  void Drop(int file) {
    Inode inode;
    if (!Find(file, inode)) return;
    const std::lock_guard<std::mutex> guard(mutex_);
    const auto known = holders_.find(inode);
    if (known == holders_.end()) return;
    ::close(known->second);
    holders_.erase(known);
  }

 private:
  using Inode = std::pair<dev_t, ino_t>;

  static bool Find(int file, Inode& inode) {
    struct stat about = {};
    if (::fstat(file, &about) != 0) return false;
    inode = {about.st_dev, about.st_ino};
    return true;
  }

  std::mutex mutex_;
  std::map<Inode, int> holders_;
};

int OwnCommand(int command) {
  switch (command) {
    case F_SETLK:
      return F_OFD_SETLK;
    case F_SETLKW:
      return F_OFD_SETLKW;
    case F_GETLK:
      return F_OFD_GETLK;
    default:
      return -1;
  }
}

int ControlFile(int file, int command, ...) {
  va_list rest;
  va_start(rest, command);
  void* argument = va_arg(rest, void*);
  va_end(rest);
  const int own = OwnCommand(command);
  const int holder = own == -1 ? -1 : LockHolders::Instance().Of(file);
  if (holder == -1) return ::fcntl(file, command, argument);
  static_cast<struct flock*>(argument)->l_pid = 0;
  return ::fcntl(holder, own, argument);
}

int CloseFile(int file) {
  LockHolders::Instance().Drop(file);
  return ::close(file);
}

}  // namespace

void UseOwnLocks() {
  static std::once_flag once;
  std::call_once(once, [] {
    sqlite3_initialize();
    sqlite3_vfs* files = sqlite3_vfs_find(nullptr);
    if (files == nullptr || files->iVersion < 3 || files->xSetSystemCall == nullptr) return;
    files->xSetSystemCall(files, "fcntl", reinterpret_cast<sqlite3_syscall_ptr>(ControlFile));
    files->xSetSystemCall(files, "close", reinterpret_cast<sqlite3_syscall_ptr>(CloseFile));
  });
}

}  // namespace vorn

#else

namespace vorn {

void UseOwnLocks() {}

}  // namespace vorn

#endif
