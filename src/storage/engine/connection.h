#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QVariant>
#include <memory>

#include "storage/base/result.h"
#include "storage/base/storage_error.h"
#include "storage/engine/condition_guard.h"
#include "storage/engine/engine_waits.h"
#include "storage/engine/statement.h"
#include "storage/engine/statement_cache.h"

struct sqlite3;

namespace vorn {

class Recordset;

/// One open database file: its encryption key, its statements and nested transactions.
class Connection {
 public:
  enum class Mode {
    Existing,
    Create,
    ReadOnly,
    Unlooked,   ///< only reads, without a look at the log before
    WithoutLog  ///< only reads, and only what the file alone holds
  };

  /// Fails when the file does not open with that password. A connection that only reads leaves the
  /// file and its log as they are.
  static Result<std::shared_ptr<Connection>> Open(const QString& path, const QString& password,
                                                  Mode mode);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Null, with the reason in `LastError`, when the engine refuses the statement.
  std::unique_ptr<Statement> Prepare(const QByteArray& sql,
                                     StatementTrust trust = StatementTrust::System);
  /// Runs a statement to its end.
  [[nodiscard]] bool Run(const QByteArray& sql, const QVariantList& values = {});
  /// The first column of the first row; invalid when there is none.
  QVariant Scalar(const QByteArray& sql, const QVariantList& values = {});

  /// Transactions nest: only the outermost one writes to the file.
  [[nodiscard]] bool Begin();
  [[nodiscard]] bool Commit();
  void Rollback();
  /// How many transactions are open inside each other.
  int TransactionDepth() const { return depth_; }

  /// The version of the file's tables; 0 while it has none.
  int SchemaVersion() const { return schemaVersion_; }
  void NoteSchemaVersion(int version) { schemaVersion_ = version; }

  const StorageError& LastError() const { return error_; }
  /// What reading has shown to be damaged (see `FoundDamage`). Whoever keeps it takes it out.
  QSet<QString>& Damage() { return damage_; }
  /// Ends the result sets that are still open, before the connection is parked.
  void EndRecordsets();

  // For those that speak with the engine themselves.

  sqlite3* Handle() const { return handle_; }
  StatementCache& Statements() { return statements_; }
  EngineWaits& Waits() { return waits_; }
  /// Notes the engine's error, or another one with what is damaged, as `LastError`. Always false.
  bool Fail();
  bool FailWith(const StorageError& error, const QString& damaged);
  void Attach(Recordset* recordset) { recordsets_.insert(recordset); }
  void Detach(Recordset* recordset) { recordsets_.remove(recordset); }

 private:
  Connection() = default;
  Result<> SetUp(const QString& password);

  sqlite3* handle_ = nullptr;
  QString path_;
  ConditionGuard guard_;
  EngineWaits waits_;
  StatementCache statements_;
  QSet<Recordset*> recordsets_;
  QSet<QString> damage_;
  StorageError error_;
  int depth_ = 0;
  int changesBefore_ = 0;   // the outermost transaction
  QByteArray roundBefore_;  // likewise, of the log
  int schemaVersion_ = 0;
};

}  // namespace vorn
