#include <windows.h>

#include <QDir>

#include "storage/files/file_identity.h"

namespace vorn {

QString FileIdentity(const QString& path) {
  const std::wstring native = QDir::toNativeSeparators(path).toStdWString();
  const HANDLE file =
      CreateFileW(native.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  BY_HANDLE_FILE_INFORMATION info{};
  const bool known = GetFileInformationByHandle(file, &info) != 0;
  CloseHandle(file);
  if (!known) return {};
  return QString::number(info.dwVolumeSerialNumber, 16) + u':' +
         QString::number(info.nFileIndexHigh, 16) + u'.' + QString::number(info.nFileIndexLow, 16);
}

}  // namespace vorn
