#include "storage/code_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "storage/file_lock.h"
#include "storage/file_replace.h"
#include "storage/private_files.h"
#include "storage/recovery_code.h"

namespace vorn {
namespace {

constexpr int kWaitMs = 20000;
constexpr qint64 kMostBytes = 1000;

// Whoever wrote it may have died before it was on the disk.
bool IsDurable(const QString& path) {
  return SyncFile(path) && SyncFolder(QFileInfo(path).path());
}

QString CodeAt(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  return RecoveryCode::Read(QString::fromLatin1(file.read(kMostBytes)));
}

}  // namespace

CodeFile::CodeFile(const QString& folder)
    : path_(QDir(folder).filePath(QStringLiteral("profile.key"))) {}

// The check letters tell a damaged one.
QString CodeFile::Code() const {
  return CodeAt(path_);
}

QString CodeFile::CodeOrNew() const {
  const QString folder = QFileInfo(path_).path();
  if (!MakePrivateFolder(folder)) return {};
  FileLock lock(QDir(folder).filePath(QStringLiteral("create.lock")));
  if (lock.Take(FileLock::Kind::Exclusive, kWaitMs) != FileLock::Result::Taken) return {};
  if (const QString kept = Code(); !kept.isEmpty()) {
    return IsDurable(path_) ? kept : QString();
  }
  const QString code = RecoveryCode::Make();
  return Write(code) ? code : QString();
}

bool CodeFile::Keep(const QString& code) const {
  const QString folder = QFileInfo(path_).path();
  if (!MakePrivateFolder(folder)) return false;
  FileLock lock(QDir(folder).filePath(QStringLiteral("create.lock")));
  return lock.Take(FileLock::Kind::Exclusive, kWaitMs) == FileLock::Result::Taken &&
         (Code() == code ? IsDurable(path_) : Write(code));
}

bool CodeFile::Write(const QString& code) const {
  const QString written = path_ + QStringLiteral(".new");
  QFile file(written);
  const QByteArray bytes = code.toLatin1() + '\n';
  const bool complete = OpenPrivate(file, QIODevice::WriteOnly | QIODevice::Truncate) &&
                        file.write(bytes) == bytes.size() && file.flush();
  file.close();
  if (complete && SyncFile(written) && SetAside() && ReplaceFile(written, path_) &&
      SyncFolder(QFileInfo(path_).path())) {
    return true;
  }
  QFile::remove(written);
  return false;
}

bool CodeFile::SetAside() const {
  if (!QFileInfo::exists(path_)) return true;
  QString aside;
  for (int number = 1; aside.isEmpty() || QFileInfo::exists(aside); ++number) {
    aside = path_ + QStringLiteral(".other%1").arg(number);
  }
  return QFile::rename(path_, aside);
}

QStringList CodeFile::Others() const {
  QStringList codes;
  const QFileInfo own(path_);
  for (const QFileInfo& file :
       own.dir().entryInfoList({own.fileName() + QStringLiteral(".other*")}, QDir::Files)) {
    codes.append(CodeAt(file.filePath()));
  }
  codes.removeAll(QString());
  return codes;
}

bool CodeFile::Forget() const {
  QFile::remove(path_);
  return !QFileInfo::exists(path_) && SyncFolder(QFileInfo(path_).path());
}

}  // namespace vorn
