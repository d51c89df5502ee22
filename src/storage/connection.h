#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <optional>
#include <utility>

#include "storage/statement.h"
#include "storage/storage_error.h"

struct sqlite3;
struct sqlite3_stmt;

namespace vorn {

class Recordset;

/// One open database file: its encryption key, statement cache, functions of the dialect, nested
/// transactions and the table of long binary data.
class Connection {
 public:
  enum class Mode {
    Existing,
    Create,
    ReadOnly,
    Unlooked,   ///< only reads, without a look at the log before
    WithoutLog  ///< only reads, and only what the file alone holds
  };

  /// How long a condition of the user's may take in all.
  inline static int ConditionMs = 15000;

  /// Null, with the reason in `error`, when the file does not open with that password. A connection
  /// that only reads leaves the file and its log as they are.
  static std::shared_ptr<Connection> Open(const QString& path, const QString& password, Mode mode,
                                          StorageError* error);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Null, with the reason in `LastError`, when the engine refuses the statement.
  std::unique_ptr<Statement> Prepare(const QByteArray& sql,
                                     StatementTrust trust = StatementTrust::System);
  /// Runs a statement to its end.
  bool Run(const QByteArray& sql, const QVariantList& values = {});
  /// The first column of the first row; invalid when there is none.
  QVariant Scalar(const QByteArray& sql, const QVariantList& values = {});

  /// Transactions nest: only the outermost one writes to the file.
  bool Begin();
  bool Commit();
  void Rollback();
  bool InTransaction() const { return depth_ > 0; }
  /// How many transactions are open inside each other.
  int TransactionDepth() const { return depth_; }

  /// Forces everything committed so far onto the disk.
  bool MakeDurable();
  bool ChangeKey(const QString& newPassword);
  /// Takes the file for this connection alone, nothing left in its log, until the next `Rollback`.
  bool TakeExclusively();

  /// The version of the file's tables; 0 while it has none.
  int SchemaVersion() const { return schemaVersion_; }
  void NoteSchemaVersion(int version) { schemaVersion_ = version; }

  /// See `DataSession::ChangeMark` and `OthersMark`.
  QString ChangeMark();
  QString OthersMark();
  /// Rows that the last statement changed.
  int Changes() const;
  qint64 LastRowId() const;
  /// Nothing, with the reason in `LastError`, when it cannot be read as it was written.
  std::optional<QByteArray> ReadLongBinary(qint64 id);
  qint64 LongBinarySize(qint64 id);
  /// The new entry's identifier, 0 on failure.
  qint64 WriteLongBinary(const QByteArray& data);

  const StorageError& LastError() const { return error_; }
  /// What reading has shown to be damaged since the last call: "source" and the number of an entry
  /// of long binary data, "file" for anything else in the file, "log" for its log.
  QSet<QString> TakeDamage() { return std::exchange(damage_, {}); }
  void Attach(Recordset* recordset) { recordsets_.insert(recordset); }
  void Detach(Recordset* recordset) { recordsets_.remove(recordset); }
  /// Ends the result sets that are still open, before the connection is parked.
  void EndRecordsets();

 private:
  friend class Recordset;
  friend class Statement;
  Connection() = default;
  bool CheckPoint();
  std::optional<QByteArray> ReadWithDigest(qint64 id, QByteArray* digest);
  std::optional<QByteArray> ReadLarge(qint64 id);
  bool ReadLateDigest(qint64 id, QByteArray* digest);
  bool SetUp(const QString& password, StorageError* error);
  bool CheckFormat(StorageError* error);
  bool Fail();
  bool FailWith(const StorageError& error, const QString& damaged);
  bool LookAtLog(const QString& path, const QString& password, Mode mode, StorageError* error);
  static int WaitWhileBusy(void* self, int attempts);
  static int IsOverdue(void* self);
  static int Authorize(void* self, int action, const char* first, const char* second,
                       const char* database, const char* trigger);
  bool ReadsMessagesOnly(sqlite3_stmt* handle, const QByteArray& sql);
  void GiveBack(const QByteArray& cacheKey, sqlite3_stmt* handle);

  sqlite3* handle_ = nullptr;
  StatementTrust preparing_ = StatementTrust::System;
  QHash<QByteArray, sqlite3_stmt*> idle_;
  QSet<Recordset*> recordsets_;
  QSet<QString> damage_;
  StorageError error_;
  QString path_;
  QElapsedTimer busySince_;
  QDeadlineTimer deadline_{QDeadlineTimer::Forever};  // of the step that runs
  int depth_ = 0;
  int changesBefore_ = 0;   // the outermost transaction
  QByteArray roundBefore_;  // likewise, of the log
  int schemaVersion_ = 0;
};

}  // namespace vorn
