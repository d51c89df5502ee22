#include "storage/session/rekeying.h"

#include <QFile>
#include <tuple>

#include "storage/engine/connection.h"
#include "storage/engine/engine.h"
#include "storage/engine/raw_pages.h"
#include "storage/keys/file_key.h"
#include "storage/session/file_error.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// Takes everything out of the log and goes on without one.
Result<> LeaveLog(Connection& connection) {
  if (connection.Scalar("PRAGMA journal_mode = DELETE").toString() == u"delete") return {};
  return StorageError{StorageError::Kind::Busy, Ui::tr("データベースが使用中です。")};
}

}  // namespace

Result<> CopyDatabaseFile(const QString& path, const QString& password, const QString& target) {
  const auto opened = Connection::Open(path, password, Connection::Mode::Existing);
  if (!opened) return FileError(path, opened.Error());
  Connection& connection = **opened;
  if (const Result<> left = LeaveLog(connection); !left) return left;
  if (!connection.Run("BEGIN EXCLUSIVE")) return connection.LastError();
  const bool copied = QFile::copy(path, target);
  std::ignore = connection.Run("ROLLBACK");  // nothing was written
  if (copied) return {};
  return StorageError{StorageError::Kind::DiskFull,
                      Ui::tr("ファイルを複製できません。ディスクの空き容量を確認して"
                             "ください。")};
}

Result<> ChangeKey(Connection& connection, const QString& newPassword) {
  // Out of the log first: the key change then rewrites the file in one ordinary transaction.
  if (const Result<> left = LeaveLog(connection); !left) return left;
  connection.Statements().Clear();
  sqlite3* const handle = connection.Handle();
  const QByteArray salt = FileKey::NewSalt(newPassword, FileSalt(handle));
  const QByteArray key = FileKey::ForEngine(newPassword, salt);
  if (sqlite3_rekey(handle, key.constData(), static_cast<int>(key.size())) != SQLITE_OK) {
    connection.Fail();
    return connection.LastError();
  }
  // The engine calls it done also where it had to take it back, as on a page that it cannot read.
  if (salt.isEmpty() || FileSalt(handle) == salt) return {};
  return StorageError{
      StorageError::Kind::Damaged,
      Ui::tr("ファイルを新しい鍵で書き直せません。ディスクの空き容量と、ファイルが壊れていないかを"
             "確認してください。")};
}

}  // namespace vorn
