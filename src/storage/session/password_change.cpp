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

}  // namespace

PasswordChange::PasswordChange(DataSession& data, const QString& marker, const QStringList& files)
    : data_(data), marker_(QFileInfo(marker).absoluteFilePath()) {
  // The marker names them seen from its folder.
  for (const QString& file : files) files_.append(QFileInfo(file).absoluteFilePath());
  files_.removeDuplicates();
}

bool PasswordChange::Fail(StorageError::Kind kind, const QString& sentence) {
  error_ = {kind, sentence};
  return false;
}

bool PasswordChange::Goes(PasswordStep step, const QString& file) {
  if (!BeforeStep || BeforeStep(step, file)) return true;
  return Fail(StorageError::Kind::Other, QStringLiteral("interrupted"));
}

PasswordChange::Outcome PasswordChange::Run(const QString& oldPassword,
                                            const QString& newPassword) {
  data_.CloseAll();
  if (!Complete()) return Outcome::Unchanged;
  QStringList present = files_;
  present.removeIf([](const QString& file) { return !QFile::exists(file); });
  const bool copied = std::all_of(present.begin(), present.end(), [&](const QString& file) {
    return MakeCopy(file, oldPassword, newPassword);
  });
  if (!copied || !WriteMarker(present)) {
    RemoveCopies();
    return Outcome::Unchanged;
  }
  if (!Complete()) return Outcome::Decided;
  const bool verified = std::all_of(present.begin(), present.end(), [&](const QString& file) {
    return Goes(PasswordStep::Verify, file) && OpensOnlyWith(file, newPassword, oldPassword);
  });
  return verified ? Outcome::Changed : Outcome::Decided;
}

// The copy is taken while nobody writes to the file, with everything of its log in it.
bool PasswordChange::MakeCopy(const QString& file, const QString& oldPassword,
                              const QString& newPassword) {
  const QString copy = CopyOf(file);
  if (!Goes(PasswordStep::Copy, file)) return false;
  data_.CloseAll();
  if (const Result<> copied = CopyDatabaseFile(file, oldPassword, copy); !copied) {
    error_ = copied.Error();
    return false;
  }
  if (!MakePrivate(copy)) {
    return Fail(StorageError::Kind::Other, Ui::tr("ディスクに書き込めません。"));
  }
  if (!Goes(PasswordStep::Rekey, file)) return false;
  if (!data_.ChangePassword(copy, oldPassword, newPassword)) {
    error_ = data_.LastError();
    return false;
  }
  if (!Goes(PasswordStep::VerifyCopy, file)) return false;
  data_.CloseAll();
  if (QFile::exists(copy + QStringLiteral("-journal"))) {
    return Fail(StorageError::Kind::Damaged, Ui::tr("ディスクに書き込めません。"));
  }
  return OpensOnlyWith(copy, newPassword, oldPassword) &&
         (SyncFile(copy) ||
          Fail(StorageError::Kind::DiskFull, Ui::tr("ディスクに書き込めません。")));
}

// With connections made for it: a warm one says nothing about the file.
bool PasswordChange::OpensOnlyWith(const QString& file, const QString& newPassword,
                                   const QString& oldPassword) {
  data_.CloseAll();
  const bool opens = data_.TestPassword(file, newPassword);
  const StorageError reason = data_.LastError();
  data_.CloseAll();
  if (!opens) {
    error_ = reason;
    return false;
  }
  if (oldPassword == newPassword || !data_.TestPassword(file, oldPassword)) return true;
  data_.CloseAll();
  return Fail(StorageError::Kind::Other,
              Ui::tr("「%1」: 前のパスワードのままです。").arg(QFileInfo(file).fileName()));
}

bool PasswordChange::WriteMarker(const QStringList& changed) {
  if (!Goes(PasswordStep::Mark, marker_)) return false;
  const QDir folder(FolderOf(marker_));
  QByteArray text = kMarkerHead;
  for (const QString& file : changed) {
    text += Fingerprint(CopyOf(file)) + ' ' + folder.relativeFilePath(file).toUtf8() + '\n';
  }
  QSaveFile marker(marker_);
  if (SyncFolder(folder.path()) && marker.open(QIODevice::WriteOnly) &&
      marker.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
      marker.write(text) == text.size() && FinishFile(marker) && SyncFolder(folder.path())) {
    return true;
  }
  return Fail(StorageError::Kind::DiskFull, Ui::tr("プロファイルのフォルダに書き込めません。"));
}

// Nothing when it cannot be read, of which the reason is noted.
std::optional<QList<PasswordChange::Decision>> PasswordChange::ReadMarker() {
  QFile marker(marker_);
  if (!marker.open(QIODevice::ReadOnly)) {
    Fail(StorageError::Kind::Other,
         Ui::tr("「%1」を読み込めません。").arg(QFileInfo(marker_).fileName()));
    return std::nullopt;
  }
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
  if (text.startsWith(kMarkerHead)) return decisions;
  Fail(StorageError::Kind::Damaged,
       Ui::tr("「%1」を読み込めません。").arg(QFileInfo(marker_).fileName()));
  return std::nullopt;
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
bool PasswordChange::PutInPlace(const Decision& decision) {
  const QString copy = CopyOf(decision.file);
  const QString name = QFileInfo(decision.file).fileName();
  if (!QFile::exists(copy)) {
    return (!decision.fingerprint.isEmpty() &&
            Fingerprint(decision.file) == decision.fingerprint) ||
           Fail(StorageError::Kind::Damaged,
                Ui::tr("パスワードの変更を完了できません。「%1」の新しいファイルがありません。")
                    .arg(name));
  }
  if (Fingerprint(copy) != decision.fingerprint) {
    return Fail(StorageError::Kind::Damaged,
                Ui::tr("パスワードの変更を完了できません。「%1」の新しいファイルが壊れています。")
                    .arg(name));
  }
  if (!Goes(PasswordStep::Replace, decision.file)) return false;
  // Logs of the file that goes would be read into the one that comes. They hold nothing: copying
  // the file has emptied them, and nobody has opened it since.
  for (const char16_t* part : {u"-journal", u"-wal", u"-shm"}) {
    QFile::remove(decision.file + QString::fromUtf16(part));
  }
  return ReplaceFile(copy, decision.file) ||
         Fail(StorageError::Kind::Other,
              Ui::tr("パスワードの変更を完了できません。ファイルを使っているプログラムを"
                     "終了してから、もう一度ログインしてください。"));
}

Result<> PasswordChange::Finish() {
  return Complete() ? Result<>() : error_;
}

bool PasswordChange::Complete() {
  if (!QFile::exists(marker_)) {
    RemoveCopies();
    return true;
  }
  const auto decisions = ReadMarker();
  if (!decisions) return false;
  for (const Decision& decision : *decisions) {
    if (!PutInPlace(decision) || !SyncFolder(FolderOf(decision.file))) return false;
  }
  if (!Goes(PasswordStep::Unmark, marker_)) return false;
  RemoveCopies();  // a re-keying's journal, for instance
  return QFile::remove(marker_) && SyncFolder(FolderOf(marker_));
}

}  // namespace vorn
