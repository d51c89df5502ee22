#include "storage/session/database_sync.h"

#include "storage/engine/engine.h"
#include "storage/session/data_session.h"
#include "storage/ui.h"

namespace vorn {
namespace {

Result<> CheckPoint(Connection& connection) {
  const auto statement = connection.Prepare("PRAGMA wal_checkpoint(FULL)");
  if (statement == nullptr || statement->Next() != Statement::Step::Row) {
    return connection.LastError();
  }
  // Columns: blocked, frames in the log, frames written to the file. A reader in another process
  // can hold the last frames back; then nothing may depend on them yet.
  const bool complete =
      statement->Value(0).toInt() == 0 && statement->Value(1) == statement->Value(2);
  if (complete) return {};
  return StorageError{StorageError::Kind::Busy, Ui::tr("データベースが使用中です。")};
}

}  // namespace

// What was committed stands in the write-ahead log, from where it is found again after a crash of
// the machine, so it is enough to bring the log to the disk.
Result<> SyncDatabase(DataSession& data, const QString& path) {
  const auto connection = data.ConnectionTo(path);
  if (connection == nullptr) {
    return StorageError{StorageError::Kind::NotFound,
                        Ui::tr("データベースファイルが開かれていません。")};
  }
  sqlite3_file* log = nullptr;
  const bool hasLog = sqlite3_file_control(connection->Handle(), "main",
                                           SQLITE_FCNTL_JOURNAL_POINTER, &log) == SQLITE_OK &&
                      log != nullptr && log->pMethods != nullptr;
  if (!hasLog) return CheckPoint(*connection);
  if (log->pMethods->xSync(log, SQLITE_SYNC_FULL) == SQLITE_OK) return {};
  return StorageError{StorageError::Kind::Other, Ui::tr("ディスクに書き込めません。")};
}

}  // namespace vorn
