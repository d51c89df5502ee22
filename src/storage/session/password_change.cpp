#include "storage/session/password_change.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

#include "storage/engine/raw_pages.h"
#include "storage/files/file_replace.h"
#include "storage/files/private_files.h"
#include "storage/files/whole_file.h"
#include "storage/keys/file_key.h"
#include "storage/session/data_session.h"
#include "storage/session/rekeying.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

const QByteArray kMarkerHead = "password change decided 2\n";
// The marker of earlier versions, which named no files.
const QByteArray kBareMarker = "password change decided\n";

QString CopyOf(const QString& file) {
  return file + QStringLiteral(".rekeyed");
}

// The first page is encrypted under random bytes of its own: no two files share it.
QByteArray Fingerprint(const QString& path) {
  const QByteArray page = FileStart(path, kPageBytes);
  return page.isEmpty() ? QByteArray()
                        : QCryptographicHash::hash(page, QCryptographicHash::Sha256).toHex();
}

void RemoveWithLogs(const QString& path) {
  for (const char16_t* part : {u"", u"-journal", u"-wal", u"-shm"}) {
    QFile::remove(path + QString::fromUtf16(part));
  }
}

QString FolderOf(const QString& path) {
  return QFileInfo(path).path();
}

StorageError Unwritable(StorageError::Kind kind) {
  return {kind, Ui::tr("ディスクに書き込めません。")};
}

StorageError FolderUnwritable() {
  return {StorageError::Kind::DiskFull, Ui::tr("プロファイルのフォルダに書き込めません。")};
}

}  // namespace

PasswordChange::PasswordChange(DataSession& data, const QString& marker, const QStringList& files)
    : data_(data), marker_(QFileInfo(marker).absoluteFilePath()) {
  // The marker names them seen from its folder.
  for (const QString& file : files) files_.append(QFileInfo(file).absoluteFilePath());
  files_.removeDuplicates();
}

Result<> PasswordChange::Begin(PasswordStep step, const QString& file) const {
  if (!BeforeStep || BeforeStep(step, file)) return {};
  return StorageError{StorageError::Kind::Other, QStringLiteral("interrupted")};
}

PasswordChange::End PasswordChange::Run(const QString& oldPassword, const QString& newPassword) {
  data_.CloseAll();
  if (const Result<> earlier = Finish(); !earlier) return {Outcome::Unchanged, earlier.Error()};
  QStringList present = files_;
  present.removeIf([](const QString& file) { return !QFile::exists(file); });
  Result<> copied = MakeCopies(present, oldPassword, newPassword);
  if (copied) copied = WriteMarker(present);
  if (!copied) {
    RemoveCopies();
    return {Outcome::Unchanged, copied.Error()};
  }
  if (const Result<> placed = Finish(); !placed) return {Outcome::Decided, placed.Error()};
  const Result<> verified = Verify(present, newPassword, oldPassword);
  return {verified ? Outcome::Changed : Outcome::Decided, verified.Error()};
}

Result<> PasswordChange::MakeCopies(const QStringList& files, const QString& oldPassword,
                                    const QString& newPassword) {
  for (const QString& file : files) {
    if (const Result<> copied = MakeCopy(file, oldPassword, newPassword); !copied) return copied;
  }
  return {};
}

// The copy is taken while nobody writes to the file, with everything of its log in it.
Result<> PasswordChange::MakeCopy(const QString& file, const QString& oldPassword,
                                  const QString& newPassword) {
  const QString copy = CopyOf(file);
  if (const Result<> begun = Begin(PasswordStep::Copy, file); !begun) return begun;
  data_.CloseAll();
  if (const Result<> copied = CopyDatabaseFile(file, oldPassword, copy); !copied) return copied;
  if (!MakePrivate(copy)) return Unwritable(StorageError::Kind::Other);
  if (const Result<> begun = Begin(PasswordStep::Rekey, file); !begun) return begun;
  if (!data_.ChangePassword(copy, oldPassword, newPassword)) return ReasonOf(data_);
  if (const Result<> begun = Begin(PasswordStep::VerifyCopy, file); !begun) return begun;
  data_.CloseAll();
  if (QFile::exists(copy + QStringLiteral("-journal"))) {
    return Unwritable(StorageError::Kind::Damaged);
  }
  if (const Result<> opens = OpensOnlyWith(copy, newPassword, oldPassword); !opens) return opens;
  return SyncFile(copy) ? Result<>() : Unwritable(StorageError::Kind::DiskFull);
}

Result<> PasswordChange::Verify(const QStringList& files, const QString& newPassword,
                                const QString& oldPassword) {
  for (const QString& file : files) {
    Result<> verified = Begin(PasswordStep::Verify, file);
    if (verified) verified = OpensOnlyWith(file, newPassword, oldPassword);
    if (!verified) return verified;
  }
  return {};
}

// With connections made for it: a warm one says nothing about the file.
Result<> PasswordChange::OpensOnlyWith(const QString& file, const QString& newPassword,
                                       const QString& oldPassword) {
  data_.CloseAll();
  const Result<> opens = ResultOf(data_, data_.TestPassword(file, newPassword));
  data_.CloseAll();
  if (!opens || oldPassword == newPassword || !data_.TestPassword(file, oldPassword)) return opens;
  data_.CloseAll();
  return StorageError{StorageError::Kind::Other,
                      Ui::tr("「%1」: 前のパスワードのままです。").arg(QFileInfo(file).fileName())};
}

Result<> PasswordChange::WriteMarker(const QStringList& changed) {
  if (const Result<> begun = Begin(PasswordStep::Mark, marker_); !begun) return begun;
  const QDir folder(FolderOf(marker_));
  QByteArray text = kMarkerHead;
  for (const QString& file : changed) {
    text += Fingerprint(CopyOf(file)) + ' ' + folder.relativeFilePath(file).toUtf8() + '\n';
  }
  QSaveFile marker(marker_);
  if (SyncFolder(folder.path()) && marker.open(QIODevice::WriteOnly) &&
      marker.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
      marker.write(text) == text.size() && FinishFile(marker) && SyncFolder(folder.path())) {
    return {};
  }
  return FolderUnwritable();
}

Result<QList<PasswordChange::Decision>> PasswordChange::ReadMarker() const {
  const auto unreadable = [this](StorageError::Kind kind) {
    return StorageError{kind,
                        Ui::tr("「%1」を読み込めません。").arg(QFileInfo(marker_).fileName())};
  };
  QFile marker(marker_);
  if (!marker.open(QIODevice::ReadOnly)) return unreadable(StorageError::Kind::Other);
  QList<Decision> decisions;
  const QByteArray text = marker.readAll();
  if (text == kBareMarker) {
    for (const QString& file : files_) {
      if (QFile::exists(CopyOf(file))) decisions.append({file, Fingerprint(CopyOf(file))});
    }
    return decisions;
  }
  const QDir folder(FolderOf(marker_));
  const QList<QByteArray> lines = text.mid(kMarkerHead.size()).split('\n');
  for (const QByteArray& line : lines) {
    const qsizetype blank = line.indexOf(' ');
    if (blank < 0) continue;
    const QString file = QString::fromUtf8(line.mid(blank + 1));
    decisions.append({QDir::cleanPath(folder.absoluteFilePath(file)), line.left(blank)});
  }
  if (!text.startsWith(kMarkerHead)) return unreadable(StorageError::Kind::Damaged);
  return decisions;
}

bool PasswordChange::AnyKeyIsOlder(const QString& password) const {
  return std::any_of(files_.begin(), files_.end(), [&password](const QString& file) {
    const QByteArray salt = FileStart(file, FileKey::kSaltBytes);
    return !salt.isEmpty() && !FileKey::IsOurs(password, salt);
  });
}

bool PasswordChange::IsUnfinished() const {
  return QFile::exists(marker_) || std::any_of(files_.begin(), files_.end(), [](const QString& f) {
           return QFile::exists(CopyOf(f));
         });
}

void PasswordChange::RemoveCopies() {
  for (const QString& file : files_) RemoveWithLogs(CopyOf(file));
}

// A copy that is gone must have become the file already, and a copy that is there must be the one
// that was decided upon.
Result<> PasswordChange::PutInPlace(const Decision& decision) {
  const QString copy = CopyOf(decision.file);
  const QString name = QFileInfo(decision.file).fileName();
  if (!QFile::exists(copy)) {
    const bool isPlaced =
        !decision.fingerprint.isEmpty() && Fingerprint(decision.file) == decision.fingerprint;
    if (isPlaced) return {};
    return StorageError{
        StorageError::Kind::Damaged,
        Ui::tr("パスワードの変更を完了できません。「%1」の新しいファイルがありません。").arg(name)};
  }
  if (Fingerprint(copy) != decision.fingerprint) {
    return StorageError{
        StorageError::Kind::Damaged,
        Ui::tr("パスワードの変更を完了できません。「%1」の新しいファイルが壊れています。")
            .arg(name)};
  }
  if (const Result<> begun = Begin(PasswordStep::Replace, decision.file); !begun) return begun;
  // Logs of the file that goes would be read into the one that comes. They hold nothing: copying
  // the file has emptied them, and nobody has opened it since.
  for (const char16_t* part : {u"-journal", u"-wal", u"-shm"}) {
    QFile::remove(decision.file + QString::fromUtf16(part));
  }
  if (ReplaceFile(copy, decision.file)) return {};
  return StorageError{StorageError::Kind::Other,
                      Ui::tr("パスワードの変更を完了できません。ファイルを使っているプログラムを"
                             "終了してから、もう一度ログインしてください。")};
}

Result<> PasswordChange::Finish() {
  if (!QFile::exists(marker_)) {
    RemoveCopies();
    return {};
  }
  const Result<QList<Decision>> decisions = ReadMarker();
  if (!decisions) return decisions.Error();
  for (const Decision& decision : *decisions) {
    if (const Result<> placed = PutInPlace(decision); !placed) return placed;
    if (!SyncFolder(FolderOf(decision.file))) return FolderUnwritable();
  }
  if (const Result<> begun = Begin(PasswordStep::Unmark, marker_); !begun) return begun;
  RemoveCopies();  // a re-keying's journal, for instance
  return QFile::remove(marker_) && SyncFolder(FolderOf(marker_)) ? Result<>() : FolderUnwritable();
}

}  // namespace vorn
