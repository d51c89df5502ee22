#include <windows.h>

#include <QDir>

#include "storage/files/file_lock.h"

namespace vorn {
namespace {

// Far behind the text that the file holds, which others must be able to read.
constexpr DWORD kLockedByte = 0x40000000;

OVERLAPPED Place() {
  OVERLAPPED place{};
  place.Offset = kLockedByte;
  return place;
}

}  // namespace

bool FileLock::OpenFile() {
  const HANDLE file = CreateFileW(QDir::toNativeSeparators(path_).toStdWString().c_str(),
                                  GENERIC_READ | GENERIC_WRITE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  handle_ = reinterpret_cast<qintptr>(file);
  return true;
}

FileLock::Result FileLock::TryTake(Kind kind) {
  const HANDLE file = reinterpret_cast<HANDLE>(handle_);
  OVERLAPPED place = Place();
  if (held_) UnlockFileEx(file, 0, 1, 0, &place);  // kinds are not changed in place
  held_ = false;
  const DWORD alone = kind == Kind::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0;
  if (LockFileEx(file, LOCKFILE_FAIL_IMMEDIATELY | alone, 0, 1, 0, &place) != 0) {
    held_ = true;
    return Result::Taken;
  }
  return GetLastError() == ERROR_LOCK_VIOLATION ? Result::Held : Result::Failed;
}

void FileLock::Release() {
  if (handle_ != -1) CloseHandle(reinterpret_cast<HANDLE>(handle_));
  handle_ = -1;
  held_ = false;
}

}  // namespace vorn
