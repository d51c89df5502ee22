#include "storage/data_session.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <utility>

#include "storage/group_size.h"
#include "storage/message_state.h"
#include "storage/private_files.h"
#include "storage/sql_dialect.h"
#include "storage/time_text.h"
#include "storage/ui.h"

namespace vorn {

namespace {

constexpr qint64 kPageBytes = 4096;
constexpr int kLetOthersMs = 3;

// Which file it was, for the user who has several.
StorageError Named(const QString& path, StorageError error) {
  // The engine writes whole pages; anything else is no question of the password.
  if (error.kind == StorageError::Kind::WrongPassword && QFileInfo(path).size() % kPageBytes != 0) {
    error = {StorageError::Kind::Damaged, Ui::tr("ファイルが途中で切れているか、壊れています。")};
  }
  error.text = QStringLiteral("「%1」: ").arg(QFileInfo(path).fileName()) + error.text;
  return error;
}

}  // namespace

bool DataSession::FailWith(const StorageError& error) {
  error_ = error;
  return false;
}

void DataSession::NoteDamage(const QString& path, Connection& connection) {
  const QSet<QString> parts = connection.TakeDamage();
  if (!parts.isEmpty()) damage_[path] += parts;
}

bool DataSession::FailFromConnection() {
  return FailWith(connection_->LastError());
}

bool DataSession::Open(const QString& path, const QString& password) {
  Close();
  std::shared_ptr<Connection> connection = pool_.Take(path, password);
  if (connection == nullptr) {
    connection = Connection::Open(path, password, Connection::Mode::Existing, &error_);
    if (connection == nullptr) {
      if (error_.kind == StorageError::Kind::Damaged) damage_[path].insert(QStringLiteral("file"));
      return FailWith(Named(path, error_));
    }
  }
  if (connection->SchemaVersion() < kSchemaVersion && !MigrateSchema(*connection)) {
    return FailWith(Named(path, connection->LastError()));
  }
  connection_ = std::move(connection);
  path_ = path;
  password_ = password;
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
  StorageError error;
  const auto connection = Connection::Open(path, password, Connection::Mode::Create, &error);
  if (connection == nullptr) return FailWith(error);
  // The mark makes the first page, so that the file is one that a wrong password does not open.
  if (!connection->Run("PRAGMA application_id = " + QByteArray::number(kApplicationId))) {
    return FailWith(connection->LastError());
  }
  pool_.Park(path, password, connection);
  return true;
}

bool DataSession::CreateField(const QString& table, const QString& column, FieldType type,
                              bool /*required*/, bool indexed, int /*size*/) {
  if (connection_ == nullptr) return false;
  return CreateColumn(*connection_, table, column, type, indexed) || FailFromConnection();
}

bool DataSession::CompleteFields() {
  return connection_ != nullptr && (CompleteSchema(*connection_) || FailFromConnection());
}

void DataSession::Close() {
  if (recordset_ != nullptr && recordset_->Failed()) error_ = recordset_->Error();
  recordset_.reset();
  if (connection_ == nullptr) return;
  NoteDamage(path_, *connection_);
  const bool goesOn = IsOpenFurtherOut();
  const int depth = goesOn ? outer_.back().innerDepth : 0;
  const int groupDepth = goesOn ? outer_.back().innerGroupDepth : 0;
  if (!goesOn) connection_->EndRecordsets();
  // A transaction left open by its owner's failure must not leak into the next task.
  if (connection_ == group_ && groupDepth_ > groupDepth) Rollback();
  while (connection_->TransactionDepth() > depth && connection_ != group_) connection_->Rollback();
  if (goesOn) {
    connection_.reset();
    return;
  }
  pool_.Park(path_, password_, std::move(connection_));
  connection_.reset();
}

void DataSession::CloseFile(const QString& path) {
  if (path_ == path) Close();
  pool_.Drop(path);
}

void DataSession::Enter(const QString& path) {
  outer_.push_back({std::exchange(connection_, nullptr), std::exchange(path_, {}),
                    std::exchange(password_, {}), std::exchange(recordset_, nullptr)});
  const auto same = std::find_if(outer_.rbegin(), outer_.rend(), [&path](const Outer& outer) {
    return outer.connection != nullptr && outer.path == path;
  });
  if (same == outer_.rend()) return;
  connection_ = same->connection;
  path_ = same->path;
  password_ = same->password;
  outer_.back().innerDepth = connection_->TransactionDepth();
  outer_.back().innerGroupDepth = groupDepth_;
}

void DataSession::Leave() {
  Close();
  const Outer outer = std::move(outer_.back());
  outer_.pop_back();
  connection_ = outer.connection;
  path_ = outer.path;
  password_ = outer.password;
  recordset_ = outer.recordset;
}

bool DataSession::IsOpenFurtherOut() const {
  return std::any_of(outer_.begin(), outer_.end(),
                     [this](const Outer& outer) { return outer.connection == connection_; });
}

bool DataSession::IsUnfinished() const {
  return connection_ != nullptr && connection_->SchemaVersion() == 0;
}

bool DataSession::Begin() {
  if (connection_ == nullptr) return false;
  LeaveGroup();
  if (group_ != nullptr && group_ == connection_) return BeginGathered();  // inside one of these
  return connection_->Begin() || FailFromConnection();
}

// What could not be written then is reported by the next flush.
void DataSession::LeaveGroup() {
  if (group_ == nullptr || group_ != connection_ || groupDepth_ > 0) return;
  if (!FlushGroup()) groupUndone_ = true;
}

bool DataSession::BeginGathered() {
  if (connection_ == nullptr) return false;
  if (groupPath_.isEmpty() || groupPath_ != path_) return Begin();
  if (group_ == nullptr) {
    if (!connection_->Begin()) return FailFromConnection();
    group_ = connection_;
    groupDepth_ = 0;
  }
  ++groupDepth_;
  return true;
}

bool DataSession::Commit() {
  if (connection_ == nullptr) return false;
  if (connection_ != group_) return connection_->Commit() || FailFromConnection();
  --groupDepth_;
  return true;
}

void DataSession::Rollback() {
  if (connection_ == nullptr) return;
  connection_->Rollback();
  if (connection_ == group_) {
    group_.reset();
    groupUndone_ = true;
  }
}

bool DataSession::FlushGroup() {
  if (std::exchange(groupUndone_, false)) return false;
  if (group_ == nullptr) return true;
  const std::shared_ptr<Connection> group = std::move(group_);
  group_.reset();
  const bool written = group->Commit() || FailWith(group->LastError());
  LetOthersWrite();
  return written;
}

// Whoever waits for the file would hardly ever hit the gap before the next group.
void DataSession::LetOthersWrite() {
  if (sincePause_.isValid() && !sincePause_.hasExpired(GroupSize::kMs)) return;
  QThread::msleep(kLetOthersMs);
  sincePause_.start();
}

bool DataSession::FlushForReading() {
  if (group_ == nullptr) return !groupUndone_;
  groupUndone_ = !FlushGroup();
  return !groupUndone_;
}

bool DataSession::EndGroup() {
  groupPath_.clear();
  return FlushGroup();
}

bool DataSession::MakeDurable(const QString& path) {
  const std::shared_ptr<Connection> connection =
      connection_ != nullptr && path_ == path ? connection_ : pool_.Peek(path);
  if (connection == nullptr) {
    return FailWith(
        {StorageError::Kind::NotFound, Ui::tr("データベースファイルが開かれていません。")});
  }
  return connection->MakeDurable() || FailWith(connection->LastError());
}

bool DataSession::OpenRecordset(const QString& select, CursorKind kind, StatementTrust trust) {
  recordset_.reset();
  if (connection_ == nullptr) return false;
  const auto translated = TranslateSql(select);
  if (!translated) return FailWith(translated.Error());

  QByteArray sql = translated->sql;
  QString table;
  if (kind == CursorKind::Updatable) {
    table = UpdatableTable(select);
    if (table.isEmpty()) {
      return FailWith({StorageError::Kind::BadStatement, Ui::tr("この文の結果は変更できません。")});
    }
    LeaveGroup();
    sql.replace(sql.indexOf('*'), 1, "rowid,*");
  }
  auto statement = connection_->Prepare(sql, trust);
  if (statement == nullptr) return FailFromConnection();
  statement->Bind(translated->parameters);
  auto rows = table.isEmpty()
                  ? std::make_shared<vorn::Recordset>(connection_, std::move(statement))
                  : std::make_shared<vorn::Recordset>(connection_, std::move(statement), table);
  // One whose first row alone is damaged still shows the others.
  if (rows->Failed() && (rows->Eof() || !table.isEmpty())) return FailFromConnection();
  recordset_ = std::move(rows);
  return true;
}

bool DataSession::ReadReceived(
    qint64 after,
    const std::function<void(qint64 row, const QByteArray& digest, const QString& subject)>& tell) {
  if (connection_ == nullptr) return false;
  const auto statement = connection_->Prepare(
      "SELECT M.ROWID, COALESCE(S.DIGEST, L.DIGEST), M.FIELD_SUBJECT FROM mail M JOIN long_binary "
      "S ON S.ID = M.MAIL LEFT JOIN late_digest L ON L.ID = M.MAIL WHERE M.ROWID > ?1 AND "
      "ABS(M.STATUS) = " +
      QByteArray::number(kStatusReceived));
  Statement::Step step = Statement::Step::Failed;
  if (statement != nullptr) {
    statement->Bind({after});
    while ((step = statement->Next()) == Statement::Step::Row) {
      tell(statement->Value(0).toLongLong(), statement->Value(1).toByteArray(),
           statement->Value(2).toString());
    }
  }
  return step == Statement::Step::Done || FailFromConnection();
}

std::optional<QString> DataSession::ReceivedAs(qint64 identity) {
  return TextOf(
      "SELECT SERIALID FROM received_identity WHERE IDENTITY = ?1 AND EXISTS (SELECT 1 FROM mail "
      "WHERE mail.SERIALID = received_identity.SERIALID AND ABS(STATUS) = " +
          QByteArray::number(kStatusReceived) + ')',
      identity);
}

bool DataSession::NoteReceived(qint64 identity, const QString& serialId) {
  return Run("INSERT OR REPLACE INTO received_identity VALUES (?1, ?2)", {identity, serialId});
}

bool DataSession::Run(const QByteArray& statement, const QVariantList& values) {
  return connection_ != nullptr && (connection_->Run(statement, values) || FailFromConnection());
}

std::optional<QString> DataSession::MessageIdOf(qint64 row) {
  return TextOf("SELECT FIELD_ID FROM mail WHERE ROWID = ?1", row);
}

std::optional<bool> DataSession::HasMessage(const QString& messageId) {
  const std::optional<QString> found = TextOf("SELECT 1 FROM mail WHERE FIELD_ID = ?1", messageId);
  if (!found) return std::nullopt;
  return !found->isEmpty();
}

std::optional<QString> DataSession::TextOf(const QByteArray& select, const QVariant& value) {
  const auto statement = connection_ == nullptr ? nullptr : connection_->Prepare(select);
  Statement::Step step = Statement::Step::Failed;
  if (statement != nullptr) {
    statement->Bind({value});
    step = statement->Next();
  }
  if (step == Statement::Step::Row) return statement->Value(0).toString();
  if (step == Statement::Step::Done) return QString();
  FailFromConnection();
  return std::nullopt;
}

bool DataSession::Execute(const QString& text) {
  if (connection_ == nullptr) return false;
  const auto translated = TranslateSql(text);
  if (!translated) return FailWith(translated.Error());
  LeaveGroup();
  if (connection_->InTransaction()) {
    return connection_->Run(translated->sql, translated->parameters) || FailFromConnection();
  }
  const bool done = connection_->Begin() &&
                    connection_->Run(translated->sql, translated->parameters) &&
                    connection_->Commit();
  if (!done) FailFromConnection();
  connection_->Rollback();
  return done;
}

QString DataSession::ChangeMark() {
  return connection_ == nullptr ? QString() : connection_->ChangeMark();
}

QString DataSession::OthersMark() {
  return connection_ == nullptr ? QString() : connection_->OthersMark();
}

QString DataSession::Now() const {
  return CurrentTimeText();
}

std::shared_ptr<Connection> DataSession::Warm(const QString& path, const QString& password) {
  if (auto parked = pool_.Take(path, password)) return parked;
  auto connection = Connection::Open(path, password, Connection::Mode::Existing, &error_);
  if (connection == nullptr) error_ = Named(path, error_);
  return connection;
}

bool DataSession::TestPassword(const QString& path, const QString& password) {
  const auto connection = Warm(path, password);
  if (connection != nullptr) pool_.Park(path, password, connection);
  return connection != nullptr;
}

bool DataSession::ChangePassword(const QString& path, const QString& oldPassword,
                                 const QString& newPassword) {
  Close();
  const auto connection = Warm(path, oldPassword);
  if (connection == nullptr) return false;
  connection->EndRecordsets();
  pool_.Drop(path);
  return connection->ChangeKey(newPassword) || FailWith(connection->LastError());
}

bool DataSession::CopyFile(const QString& path, const QString& password, const QString& target) {
  Close();
  pool_.Drop(path);
  const auto connection = Connection::Open(path, password, Connection::Mode::Existing, &error_);
  if (connection == nullptr) return FailWith(Named(path, error_));
  if (!connection->TakeExclusively()) return FailWith(connection->LastError());
  const bool copied = QFile::copy(path, target);
  connection->Rollback();
  return copied || FailWith({StorageError::Kind::DiskFull,
                             Ui::tr("ファイルを複製できません。ディスクの空き容量を確認して"
                                    "ください。")});
}

FileFindings DataSession::CheckFile(const QString& path, const QString& password,
                                    FileContents contents) {
  FileFindings findings = CheckDatabaseFile(path, password, contents);
  if (damage_.take(path).contains(QStringLiteral("log"))) findings.AddLostLog();
  if (!findings.parts.isEmpty()) damage_.insert(path, findings.parts);
  return findings;
}

void DataSession::CloseAll() {
  Close();
  EndGroup();
  pool_.Drop();
}

}  // namespace vorn
