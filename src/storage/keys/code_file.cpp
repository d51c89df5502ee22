#include "storage/keys/code_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include "storage/files/file_lock.h"
#include "storage/files/file_replace.h"
#include "storage/files/private_files.h"
#include "storage/keys/recovery_code.h"
#include "storage/keys/secret_store.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kCodeWaitMs = 20000;
constexpr qint64 kMostBytes = 1000;

// What the file says in the place of a code. No code is mistaken for it.
const QString kSecret = QStringLiteral("secret ");

QString LineOf(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  return QString::fromLatin1(file.read(kMostBytes)).trimmed();
}

// The name of the desktop's secret; empty when the file holds something else.
QString SecretAt(const QString& path) {
  const QString line = LineOf(path);
  return line.startsWith(kSecret) ? line.sliced(kSecret.size()) : QString();
}

StorageError NotKept() {
  return {StorageError::Kind::DiskFull,
          Ui::tr("鍵のファイル「profile."
                 "key」を保存できません。ディスクの空き容量、フォルダの権限、デスクトップの"
                 "キーリングを確認してください。")};
}

// Whoever wrote it may have died before it was on the disk.
Result<> MakeDurable(const QString& path) {
  return SyncFile(path) && SyncFolder(QFileInfo(path).path()) ? Result<>() : NotKept();
}

// Whoever makes or changes the file does so alone.
bool TakeAlone(FileLock& lock, const QString& folder) {
  return MakePrivateFolder(folder) &&
         lock.Take(FileLock::Kind::Exclusive, kCodeWaitMs) == FileLock::Result::Taken;
}

}  // namespace

CodeFile::CodeFile(const QString& folder, SecretStore* secrets)
    : path_(QDir(folder).filePath(QStringLiteral("profile.key"))), secrets_(secrets) {}

bool CodeFile::NamesSecret() const {
  return !SecretAt(path_).isEmpty();
}

// The check letters tell a damaged one.
QString CodeFile::CodeAt(const QString& path) const {
  const QString secret = SecretAt(path);
  if (secret.isEmpty()) return RecoveryCode::Read(LineOf(path));
  return secrets_ == nullptr ? QString() : RecoveryCode::Read(secrets_->Read(secret));
}

QString CodeFile::Code() const {
  return CodeAt(path_);
}

Result<QString> CodeFile::CodeOrNew() const {
  const QString folder = QFileInfo(path_).path();
  FileLock lock(QDir(folder).filePath(QStringLiteral("create.lock")));
  if (!TakeAlone(lock, folder)) return NotKept();
  if (const QString kept = Code(); !kept.isEmpty()) {
    if (const Result<> durable = MakeDurable(path_); !durable) return durable.Error();
    return kept;
  }
  const QString code = RecoveryCode::Make();
  if (!WriteSecret(code)) {
    if (const Result<> written = Replace(code); !written) return written.Error();
  }
  return code;
}

Result<> CodeFile::Keep(const QString& code) const {
  const QString folder = QFileInfo(path_).path();
  FileLock lock(QDir(folder).filePath(QStringLiteral("create.lock")));
  if (!TakeAlone(lock, folder)) return NotKept();
  if (Code() == code) return MakeDurable(path_);
  const Result<> kept = WriteSecret(code);
  // What the desktop guards does not become a file because it cannot be asked at the moment.
  return kept || NamesSecret() ? kept : Replace(code);
}

Result<> CodeFile::WriteSecret(const QString& code) const {
  const QString name = QUuid::createUuid().toString(QUuid::Id128);
  if (secrets_ == nullptr || !secrets_->Keep(name, code)) return NotKept();
  const Result<> written = Replace(kSecret + name);
  if (!written) secrets_->Forget(name);
  return written;
}

Result<> CodeFile::Replace(const QString& line) const {
  const QString written = path_ + QStringLiteral(".new");
  QFile file(written);
  const QByteArray bytes = line.toLatin1() + '\n';
  const bool complete = OpenPrivate(file, QIODevice::WriteOnly | QIODevice::Truncate) &&
                        file.write(bytes) == bytes.size() && file.flush();
  file.close();
  if (complete && SyncFile(written) && SetAside() && ReplaceFile(written, path_) &&
      SyncFolder(QFileInfo(path_).path())) {
    return {};
  }
  QFile::remove(written);
  return NotKept();
}

Result<> CodeFile::SetAside() const {
  if (!QFileInfo::exists(path_)) return {};
  QString aside;
  for (int number = 1; aside.isEmpty() || QFileInfo::exists(aside); ++number) {
    aside = path_ + QStringLiteral(".other%1").arg(number);
  }
  return QFile::rename(path_, aside) ? Result<>() : NotKept();
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

Result<> CodeFile::Forget() const {
  QFile::remove(path_);
  if (QFileInfo::exists(path_)) return NotKept();
  return SyncFolder(QFileInfo(path_).path()) ? Result<>() : NotKept();
}

}  // namespace vorn
