#include "storage/profile_lock.h"

#include <QDir>

#include "storage/private_files.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kLoginWaitMs = 10000;  // a password change copies every message
constexpr int kAloneWaitMs = 1000;

}  // namespace

ProfileLock::ProfileLock(const QString& folder)
    : folder_(folder),
      users_(QDir(folder).filePath(QStringLiteral("profile.lock"))),
      gate_(QDir(folder).filePath(QStringLiteral("change.lock"))) {}

bool ProfileLock::Fail(FileLock::Result result, const FileLock& lock, const QString& inUse) {
  const bool held = result == FileLock::Result::Held;
  const QString holder = held ? lock.Holder() : QString();
  error_ = {held ? StorageError::Kind::Busy : StorageError::Kind::Other,
            held ? inUse : Ui::tr("プロファイルのフォルダに書き込めません。")};
  if (!holder.isEmpty()) error_.text += Ui::tr("使っているプログラム: %1").arg(holder);
  return false;
}

bool ProfileLock::Share() {
  const FileLock::Result result = MakePrivateFolder(folder_)
                                      ? users_.Take(FileLock::Kind::Shared, kLoginWaitMs)
                                      : FileLock::Result::Failed;
  return result == FileLock::Result::Taken ||
         Fail(result, gate_,
              Ui::tr("ほかのプログラムがパスワードを変更しています。しばらくしてからやり直して"
                     "ください。"));
}

bool ProfileLock::TakeAlone() {
  const bool shared = users_.IsHeld();
  const QString inUse =
      Ui::tr("ほかのプログラムがこのプロファイルを使っています。終了してからやり直してください。");
  FileLock::Result result = MakePrivateFolder(folder_)
                                ? gate_.Take(FileLock::Kind::Exclusive, kAloneWaitMs)
                                : FileLock::Result::Failed;
  if (result != FileLock::Result::Taken) return Fail(result, gate_, inUse);
  gate_.WriteHolder();
  result = users_.Take(FileLock::Kind::Exclusive, kAloneWaitMs);
  if (result == FileLock::Result::Taken) return true;
  // Behind the gate nobody else can have it alone, so this cannot fail for being held.
  if (shared) users_.Take(FileLock::Kind::Shared, kLoginWaitMs);
  gate_.Release();
  return Fail(result, users_, inUse);
}

bool ProfileLock::ShareAgain() {
  const FileLock::Result result = users_.Take(FileLock::Kind::Shared, kLoginWaitMs);
  gate_.Release();
  return result == FileLock::Result::Taken || Fail(result, gate_, {});
}

void ProfileLock::Release() {
  users_.Release();
  gate_.Release();
}

}  // namespace vorn
