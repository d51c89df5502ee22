#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "storage/base/serial_id.h"
#include "storage/base/storage_error.h"
#include "storage/engine/connection.h"
#include "storage/engine/recordset.h"
#include "storage/engine/schema.h"
#include "storage/files/found_damage.h"
#include "storage/session/connection_pool.h"
#include "storage/session/transaction_group.h"

namespace vorn {

/// The database session: at most one open database at a time, and the current result set.
///
/// Every user opens the database it needs as an `OpenedDatabase` (`storage/databases.h`) and runs
/// its statements; closed connections stay warm, so that opening the same file again costs next to
/// nothing. Operations report success as a boolean and leave the reason of a failure in
/// `LastError`. Used on one thread.
class DataSession {
 public:
  /// Opens a file, closing the one that is open: between `Enter` and `Leave`, as `OpenedDatabase`
  /// does it, nobody's. A wrong password never opens a file, warm or not.
  [[nodiscard]] bool Open(const QString& path, const QString& password);
  /// Creates an empty database file; false when the file exists.
  [[nodiscard]] bool Create(const QString& path, const QString& password);
  /// Adds a column to a table of the open database (see `CreateColumn`).
  [[nodiscard]] bool CreateField(const QString& table, const QString& column, FieldType type,
                                 bool required, bool indexed, int size);
  void Close();

  /// Lays the open database aside, with its result set and its transaction, until `Leave`. When the
  /// file at `path` is open, here or further out, it is the open one again; else none is.
  void Enter(const QString& path);
  /// Closes what was opened since `Enter`, undoing a transaction that was left open, and goes on
  /// with what was laid aside.
  void Leave();

  /// Really closes the file at `path`, the open one or a warm one.
  void CloseFile(const QString& path);
  /// Really closes every file, warm ones included.
  void CloseAll();

  /// Transactions nest; an inner rollback undoes the inner one alone.
  [[nodiscard]] bool Begin();
  /// The same, gathered with others where `Group` gathers those of the open file.
  [[nodiscard]] bool BeginGathered();
  [[nodiscard]] bool Commit();
  void Rollback();
  TransactionGroup& Group() { return group_; }

  /// Runs a SELECT statement of the dialect, whose rows become the current result set. A statement
  /// that holds a condition written by the user may read messages and nothing else.
  [[nodiscard]] bool OpenRecordset(const QString& select, CursorKind kind,
                                   StatementTrust trust = StatementTrust::System);
  /// The current result set; null before the first `OpenRecordset`, and after one that failed.
  RecordsetPtr Recordset() const { return open_.recordset; }
  /// Runs a statement that returns no rows.
  [[nodiscard]] bool Execute(const QString& statement);

  SerialId NewSerialID(const QString& prefix = {}) { return serials_.Next(prefix); }
  /// The current time in its stored form (see `CurrentTimeText`).
  QString Now() const;

  bool TestPassword(const QString& path, const QString& password);
  /// Re-keys a file. On failure the old password stays valid.
  [[nodiscard]] bool ChangePassword(const QString& path, const QString& oldPassword,
                                    const QString& newPassword);

  /// What reading has shown to be damaged.
  FoundDamage& Damage() { return damage_; }
  /// Why the last call that failed did (see `ReasonOf`).
  const StorageError& LastError() const { return error_; }

  /// The connection to the open database, for what storage/ asks of the engine itself; null when
  /// none is open.
  const std::shared_ptr<Connection>& OpenConnection() const { return open_.connection; }
  /// The same to the file at `path`, the open one or a warm one; null when it is neither.
  std::shared_ptr<Connection> ConnectionTo(const QString& path) const;

 private:
  struct OpenFile {
    std::shared_ptr<Connection> connection;
    QString path;
    QString password;
    RecordsetPtr recordset;
  };
  // What was laid aside, and how far transactions had gone on what came in its place.
  struct Outer {
    OpenFile file;
    int innerDepth = 0;
    int innerGroupDepth = 0;
  };

  bool FailWith(const StorageError& error);

  OpenFile open_;
  std::vector<Outer> outer_;
  ConnectionPool pool_;
  TransactionGroup group_;
  SerialIdGenerator serials_;
  FoundDamage damage_;
  StorageError error_;
};

}  // namespace vorn
