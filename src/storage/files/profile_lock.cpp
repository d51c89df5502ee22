#include "storage/files/profile_lock.h"

#include <QDir>

#include "storage/files/private_files.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kLoginWaitMs = 10000;  // a password change copies every message
constexpr int kAloneWaitMs = 1000;

// What taking a lock came to. When somebody holds it, `lock` tells who, and `inUse` is the
// sentence.
Result<> ResultOf(FileLock::Result taken, const FileLock& lock, const QString& inUse) {
  if (taken == FileLock::Result::Taken) return {};
  if (taken == FileLock::Result::Failed) {
    return StorageError{StorageError::Kind::Other,
                        Ui::tr("プロファイルのフォルダに書き込めません。")};
  }
  const QString holder = lock.Holder();
  return StorageError{
      StorageError::Kind::Busy,
      holder.isEmpty() ? inUse : inUse + Ui::tr("使っているプログラム: %1").arg(holder)};
}

}  // namespace

ProfileLock::ProfileLock(const QString& folder)
    : folder_(folder),
      users_(QDir(folder).filePath(QStringLiteral("profile.lock"))),
      gate_(QDir(folder).filePath(QStringLiteral("change.lock"))) {}

Result<> ProfileLock::Share() {
  const FileLock::Result result = MakePrivateFolder(folder_)
                                      ? users_.Take(FileLock::Kind::Shared, kLoginWaitMs)
                                      : FileLock::Result::Failed;
  return ResultOf(result, gate_,
                  Ui::tr("ほかのプログラムがパスワードを変更しています。しばらくしてからやり直して"
                         "ください。"));
}

Result<> ProfileLock::TakeAlone() {
  const bool shared = users_.IsHeld();
  const QString inUse =
      Ui::tr("ほかのプログラムがこのプロファイルを使っています。終了してからやり直してください。");
  FileLock::Result result = MakePrivateFolder(folder_)
                                ? gate_.Take(FileLock::Kind::Exclusive, kAloneWaitMs)
                                : FileLock::Result::Failed;
  if (result != FileLock::Result::Taken) return ResultOf(result, gate_, inUse);
  gate_.WriteHolder();
  result = users_.Take(FileLock::Kind::Exclusive, kAloneWaitMs);
  if (result == FileLock::Result::Taken) return {};
  // Behind the gate nobody else can have it alone, so this cannot fail for being held.
  if (shared) users_.Take(FileLock::Kind::Shared, kLoginWaitMs);
  gate_.Release();
  return ResultOf(result, users_, inUse);
}

Result<> ProfileLock::ShareAgain() {
  const FileLock::Result result = users_.Take(FileLock::Kind::Shared, kLoginWaitMs);
  gate_.Release();
  return ResultOf(result, gate_, {});
}

void ProfileLock::Release() {
  users_.Release();
  gate_.Release();
}

}  // namespace vorn
