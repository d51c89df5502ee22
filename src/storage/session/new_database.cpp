#include "storage/session/new_database.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "storage/files/file_lock.h"
#include "storage/files/file_replace.h"
#include "storage/files/private_files.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kCreationWaitMs = 20000;  // another program's creation takes a moment

// Whoever holds the lock of the folder is alone in making files there, so what lies there
// unfinished has no living maker.
void RemoveUnfinished(const QFileInfo& file) {
  QDir folder = file.dir();
  const QStringList left =
      folder.entryList({file.fileName() + QStringLiteral(".new-*")}, QDir::Files | QDir::Hidden);
  for (const QString& name : left) folder.remove(name);
}

// The logs of a file that was lost would be read into the new one.
void SetLogsAside(const QString& path) {
  QFile::remove(path + QStringLiteral("-shm"));
  for (const char16_t* part : {u"-wal", u"-journal"}) {
    const QString log = path + QString::fromUtf16(part);
    if (!QFile::exists(log)) continue;
    QFile::remove(log + QStringLiteral(".lost"));
    QFile::rename(log, log + QStringLiteral(".lost"));
  }
}

Result<> FillAndClose(DataSession& data, const QString& path, const QString& password,
                      const std::function<Result<>()>& makeTables) {
  Result<> filled = ResultOf(data, data.Create(path, password) && data.Open(path, password));
  if (filled) filled = makeTables();
  data.CloseFile(path);
  if (!filled) return filled;
  if (!QFile::exists(path + QStringLiteral("-wal")) && SyncFile(path)) return {};
  return StorageError{
      StorageError::Kind::DiskFull,
      Ui::tr("データベースファイルを作成できません。ディスクの空き容量を確認してください。")};
}

}  // namespace

Result<> CreateDatabaseFile(DataSession& data, const QString& path, const QString& password,
                            const std::function<Result<>()>& makeTables) {
  const QFileInfo file(path);
  const StorageError unwritable{
      StorageError::Kind::Other,
      Ui::tr("フォルダ「%1」に書き込めません。").arg(QDir::toNativeSeparators(file.path()))};
  if (!MakePrivateFolder(file.path())) return unwritable;
  FileLock lock(file.dir().filePath(QStringLiteral("create.lock")));
  switch (lock.Take(FileLock::Kind::Exclusive, kCreationWaitMs)) {
    case FileLock::Result::Taken:
      break;
    case FileLock::Result::Held:
      return StorageError{StorageError::Kind::Busy,
                          Ui::tr("ほかのプログラムがデータベースを作成しています。")};
    case FileLock::Result::Failed:
      return unwritable;
  }
  if (QFile::exists(path)) return {};
  RemoveUnfinished(file);
  const QString unfinished =
      path + QStringLiteral(".new-%1").arg(QCoreApplication::applicationPid());
  SetLogsAside(path);
  const Result<> made = FillAndClose(data, unfinished, password, makeTables);
  const bool placed = made && PlaceNewFile(unfinished, path) != Placing::Failed;
  RemoveUnfinished(file);
  if (!made) return made;
  return placed && SyncFolder(file.path()) ? Result<>() : unwritable;
}

}  // namespace vorn
