#include "storage/password_change.h"

#include <QFile>
#include <QSaveFile>

#include "storage/data_session.h"
#include "storage/file_replace.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString CopyOf(const QString& file) {
  return file + QStringLiteral(".rekeyed");
}

const QByteArray kMarkerText = "password change decided\n";

}  // namespace

PasswordChange::PasswordChange(DataSession& data, QString marker, QStringList files)
    : data_(data), marker_(std::move(marker)), files_(std::move(files)) {
  files_.removeDuplicates();
}

bool PasswordChange::Run(const QString& oldPassword, const QString& newPassword) {
  if (!Finish()) return false;
  data_.CloseAll();
  for (const QString& file : files_) {
    if (!QFile::exists(file)) continue;
    if (!MakeCopy(file, oldPassword, newPassword)) {
      RemoveCopies();
      return false;
    }
  }
  if (!WriteMarker()) {
    RemoveCopies();
    return false;
  }
  // Decided: whatever fails from here on is completed by the next `Finish`.
  Finish();
  return true;
}

// The copy is taken while nobody writes to the file, with everything of its log in it.
bool PasswordChange::MakeCopy(const QString& file, const QString& oldPassword,
                              const QString& newPassword) {
  const QString copy = CopyOf(file);
  QFile::remove(copy);
  if (!data_.CopyFile(file, oldPassword, copy) ||
      !data_.ChangePassword(copy, oldPassword, newPassword)) {
    error_ = data_.LastError();
    return false;
  }
  return true;
}

bool PasswordChange::WriteMarker() {
  QSaveFile marker(marker_);
  if (marker.open(QIODevice::WriteOnly) && marker.write(kMarkerText) == kMarkerText.size() &&
      marker.commit()) {
    return true;
  }
  error_ = {StorageError::Kind::DiskFull, Ui::tr("プロファイルのフォルダに書き込めません。")};
  return false;
}

void PasswordChange::RemoveCopies() {
  for (const QString& file : files_) {
    for (const char16_t* part : {u"", u"-journal", u"-wal", u"-shm"}) {
      QFile::remove(CopyOf(file) + QString::fromUtf16(part));
    }
  }
}

bool PasswordChange::MoveCopies() {
  bool moved = true;
  for (const QString& file : files_) {
    if (QFile::exists(CopyOf(file)) && !ReplaceFile(CopyOf(file), file)) moved = false;
  }
  return moved;
}

bool PasswordChange::Finish() {
  if (!QFile::exists(marker_)) {
    RemoveCopies();
    return true;
  }
  if (!MoveCopies()) {
    error_ = {StorageError::Kind::Other,
              Ui::tr("パスワードの変更を完了できません。ファイルを使っているプログラムを"
                     "終了してから、もう一度ログインしてください。")};
    return false;
  }
  return QFile::remove(marker_);
}

}  // namespace vorn
