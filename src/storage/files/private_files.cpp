#include "storage/files/private_files.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <tuple>

namespace vorn {
namespace {

constexpr QFile::Permissions kFile = QFile::ReadOwner | QFile::WriteOwner;
constexpr QFile::Permissions kFolder = kFile | QFile::ExeOwner;
constexpr QFile::Permissions kOthers = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                       QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

bool IsLink(const QFileInfo& entry) {
  return entry.isSymLink() || entry.isJunction();
}

bool Tighten(const QFileInfo& entry) {
  if (IsLink(entry) || !(entry.permissions() & kOthers)) return true;
  return QFile::setPermissions(entry.filePath(), entry.isDir() ? kFolder : kFile);
}

}  // namespace

bool MakePrivateFolder(const QString& folder) {
  const QString path = QDir::cleanPath(folder);
  if (QFileInfo(path).isDir()) return true;
  const QString parent = QFileInfo(path).path();
  if (parent != path && !MakePrivateFolder(parent)) return false;
  return QDir().mkdir(path, kFolder) || QFileInfo(path).isDir();  // another may have been quicker
}

bool OpenPrivate(QFile& file, QIODevice::OpenMode mode) {
  return file.open(mode, kFile) && Tighten(QFileInfo(file.fileName()));
}

bool MakePrivate(const QString& path) {
  return Tighten(QFileInfo(path));
}

void MakeTreePrivate(const QString& folder) {
  if (IsLink(QFileInfo(QDir::cleanPath(folder)))) return;
  std::ignore = MakePrivate(folder);  // what is in it may be one's own all the same
  QDirIterator entries(folder,
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
  while (entries.hasNext()) {
    entries.next();
    std::ignore = Tighten(entries.fileInfo());
  }
}

}  // namespace vorn
