#include <windows.h>

#include <QDir>

#include "storage/files/file_replace.h"

namespace vorn {
namespace {

std::wstring Native(const QString& path) {
  return QDir::toNativeSeparators(path).toStdWString();
}

}  // namespace

Placing PlaceNewFile(const QString& from, const QString& to) {
  if (MoveFileExW(Native(from).c_str(), Native(to).c_str(), MOVEFILE_WRITE_THROUGH) != 0) {
    return Placing::Done;
  }
  const DWORD reason = GetLastError();
  return reason == ERROR_ALREADY_EXISTS || reason == ERROR_FILE_EXISTS ? Placing::Exists
                                                                       : Placing::Failed;
}

bool SyncFile(const QString& path) {
  const HANDLE file = CreateFileW(Native(path).c_str(), GENERIC_WRITE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool synced = FlushFileBuffers(file) != 0;
  CloseHandle(file);
  return synced;
}

// The file system's own log keeps names; moves write through.
bool SyncFolder(const QString&) {
  return true;
}

}  // namespace vorn
