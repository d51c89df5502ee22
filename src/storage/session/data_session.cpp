#include "storage/session/data_session.h"

#include <QFile>
#include <algorithm>
#include <tuple>
#include <utility>

#include "storage/base/time_text.h"
#include "storage/files/private_files.h"
#include "storage/session/file_error.h"
#include "storage/session/rekeying.h"
#include "storage/sql/sql_dialect.h"
#include "storage/ui.h"

namespace vorn {

bool DataSession::FailWith(const StorageError& error) {
  error_ = error;
  return false;
}

bool DataSession::Open(const QString& path, const QString& password) {
  Close();
  const auto opened = pool_.Get(path, password);
  if (!opened) {
    if (opened.Error().kind == StorageError::Kind::Damaged) damage_.Add(path, {kDamagedFile});
    return FailWith(FileError(path, opened.Error()));
  }
  const std::shared_ptr<Connection>& connection = *opened;
  if (connection->SchemaVersion() < kSchemaVersion && !MigrateSchema(*connection)) {
    return FailWith(FileError(path, connection->LastError()));
  }
  open_ = {connection, path, password, nullptr};
  return true;
}

bool DataSession::Create(const QString& path, const QString& password) {
  if (QFile::exists(path)) {
    return FailWith({StorageError::Kind::Other, Ui::tr("同じ名前のファイルが既にあります。")});
  }
  Close();
  QFile file(path);
  if (!OpenPrivate(file, QIODevice::WriteOnly | QIODevice::NewOnly)) {
    return FailWith({StorageError::Kind::Other, Ui::tr("データベースファイルを作成できません。")});
  }
  file.close();
  const auto opened = Connection::Open(path, password, Connection::Mode::Create);
  if (!opened) return FailWith(opened.Error());
  const std::shared_ptr<Connection>& connection = *opened;
  // The mark makes the first page, so that the file is one that a wrong password does not open.
  if (!connection->Run("PRAGMA application_id = " + QByteArray::number(kApplicationId))) {
    return FailWith(connection->LastError());
  }
  pool_.Park(path, password, connection);
  return true;
}

bool DataSession::CreateField(const QString& table, const QString& column, FieldType type,
                              bool /*required*/, bool indexed, int /*size*/) {
  if (open_.connection == nullptr) return false;
  return CreateColumn(*open_.connection, table, column, type, indexed) ||
         FailWith(open_.connection->LastError());
}

void DataSession::Close() {
  OpenFile& open = open_;
  if (open.recordset != nullptr && open.recordset->Failed()) error_ = open.recordset->Error();
  open.recordset.reset();
  if (open.connection == nullptr) return;
  damage_.Add(open.path, std::exchange(open.connection->Damage(), {}));
  const bool goesOn = std::any_of(outer_.begin(), outer_.end(), [&open](const Outer& outer) {
    return outer.file.connection == open.connection;
  });
  const int depth = goesOn ? outer_.back().innerDepth : 0;
  const int groupDepth = goesOn ? outer_.back().innerGroupDepth : 0;
  if (!goesOn) open.connection->EndRecordsets();
  // A transaction left open by its owner's failure must not leak into the next task.
  if (group_.IsOpenOn(open.connection) && group_.Depth() > groupDepth) Rollback();
  while (open.connection->TransactionDepth() > depth && !group_.IsOpenOn(open.connection)) {
    open.connection->Rollback();
  }
  const std::shared_ptr<Connection> connection = std::exchange(open.connection, nullptr);
  if (!goesOn) pool_.Park(open.path, open.password, connection);
}

void DataSession::CloseFile(const QString& path) {
  if (open_.path == path) Close();
  pool_.Drop(path);
}

void DataSession::CloseAll() {
  Close();
  std::ignore = group_.End();
  pool_.Drop();
}

void DataSession::Enter(const QString& path) {
  outer_.push_back({std::exchange(open_, {})});
  const auto same = std::find_if(outer_.rbegin(), outer_.rend(), [&path](const Outer& outer) {
    return outer.file.connection != nullptr && outer.file.path == path;
  });
  if (same == outer_.rend()) return;
  open_ = same->file;
  open_.recordset.reset();
  outer_.back().innerDepth = open_.connection->TransactionDepth();
  outer_.back().innerGroupDepth = group_.Depth();
}

void DataSession::Leave() {
  Close();
  open_ = std::move(outer_.back().file);
  outer_.pop_back();
}

std::shared_ptr<Connection> DataSession::ConnectionTo(const QString& path) const {
  return open_.connection != nullptr && open_.path == path ? open_.connection : pool_.Peek(path);
}

bool DataSession::Begin() {
  if (open_.connection == nullptr) return false;
  group_.MakeWay(open_.connection);
  const bool begun = group_.IsOpenOn(open_.connection)  // inside one of these
                         ? group_.Begin(open_.connection)
                         : open_.connection->Begin();
  return begun || FailWith(open_.connection->LastError());
}

bool DataSession::BeginGathered() {
  if (open_.connection == nullptr) return false;
  if (!group_.Gathers(open_.path)) return Begin();
  return group_.Begin(open_.connection) || FailWith(open_.connection->LastError());
}

bool DataSession::Commit() {
  if (open_.connection == nullptr) return false;
  if (!group_.IsOpenOn(open_.connection)) {
    return open_.connection->Commit() || FailWith(open_.connection->LastError());
  }
  group_.Commit();
  return true;
}

void DataSession::Rollback() {
  if (open_.connection == nullptr) return;
  const StorageError& reason = open_.connection->LastError();
  open_.connection->Rollback();
  if (group_.IsOpenOn(open_.connection)) group_.NoteUndone(reason ? reason : error_);
}

bool DataSession::OpenRecordset(const QString& select, CursorKind kind, StatementTrust trust) {
  open_.recordset.reset();
  if (open_.connection == nullptr) return false;
  const auto translated = TranslateSql(select);
  if (!translated) return FailWith(translated.Error());

  QByteArray sql = translated->sql;
  QString table;
  if (kind == CursorKind::Updatable) {
    table = UpdatableTable(select);
    if (table.isEmpty()) {
      return FailWith({StorageError::Kind::BadStatement, Ui::tr("この文の結果は変更できません。")});
    }
    group_.MakeWay(open_.connection);
    sql.replace(sql.indexOf('*'), 1, "rowid,*");
  }
  auto statement = open_.connection->Prepare(sql, trust);
  if (statement == nullptr) return FailWith(open_.connection->LastError());
  statement->Bind(translated->parameters);
  auto rows =
      table.isEmpty()
          ? std::make_shared<vorn::Recordset>(open_.connection, std::move(statement))
          : std::make_shared<vorn::Recordset>(open_.connection, std::move(statement), table);
  // One whose first row alone is damaged still shows the others.
  if (rows->Failed() && (rows->Eof() || !table.isEmpty())) {
    return FailWith(open_.connection->LastError());
  }
  open_.recordset = std::move(rows);
  return true;
}

bool DataSession::Execute(const QString& text) {
  if (open_.connection == nullptr) return false;
  const auto translated = TranslateSql(text);
  if (!translated) return FailWith(translated.Error());
  Connection& connection = *open_.connection;
  group_.MakeWay(open_.connection);
  if (connection.TransactionDepth() > 0) {
    return connection.Run(translated->sql, translated->parameters) ||
           FailWith(connection.LastError());
  }
  const bool done = connection.Begin() && connection.Run(translated->sql, translated->parameters) &&
                    connection.Commit();
  if (!done) FailWith(connection.LastError());
  connection.Rollback();
  return done;
}

QString DataSession::Now() const {
  return CurrentTimeText();
}

bool DataSession::TestPassword(const QString& path, const QString& password) {
  const auto opened = pool_.Get(path, password);
  if (!opened) return FailWith(FileError(path, opened.Error()));
  pool_.Park(path, password, *opened);
  return true;
}

bool DataSession::ChangePassword(const QString& path, const QString& oldPassword,
                                 const QString& newPassword) {
  Close();
  const auto opened = pool_.Get(path, oldPassword);
  if (!opened) return FailWith(FileError(path, opened.Error()));
  Connection& connection = **opened;
  connection.EndRecordsets();
  pool_.Drop(path);
  const Result<> changed = ChangeKey(connection, newPassword);
  return changed || FailWith(changed.Error());
}

}  // namespace vorn
