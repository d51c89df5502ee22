#include "storage/engine/connection.h"

#include <QFileInfo>
#include <QUrl>
#include <tuple>

#include "storage/engine/change_count.h"
#include "storage/engine/engine.h"
#include "storage/engine/engine_locks.h"
#include "storage/engine/log_look.h"
#include "storage/engine/log_state.h"
#include "storage/engine/raw_pages.h"
#include "storage/engine/recordset.h"
#include "storage/engine/schema.h"
#include "storage/files/found_damage.h"
#include "storage/keys/file_key.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// What statements are kept under begins with whose they are.
constexpr char kSystemKey = 's';
constexpr char kUserKey = 'u';

// The engine takes a file that cannot change for all there is.
QByteArray UriWithoutLog(const QString& path) {
  return "file:" + QUrl::toPercentEncoding(path, "/") + "?immutable=1";
}

int OpenFlags(Connection::Mode mode) {
  switch (mode) {
    case Connection::Mode::Existing:
      return SQLITE_OPEN_READWRITE;
    case Connection::Mode::Create:
      return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    default:
      return SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
  }
}

// The first read, which is what tests the key.
Result<> CheckFormat(Connection& connection) {
  const QVariant version = connection.Scalar("PRAGMA user_version");
  if (!version.isValid()) return connection.LastError();
  const QVariant tables = connection.Scalar("SELECT COUNT(0) FROM sqlite_master");
  if (!tables.isValid()) return connection.LastError();
  connection.NoteSchemaVersion(version.toInt());
  const int application = connection.Scalar("PRAGMA application_id").toInt();
  if (tables.toInt() > 0 && application != kApplicationId) {
    return StorageError{StorageError::Kind::Foreign,
                        Ui::tr("このプログラムのデータベースではありません。")};
  }
  if (version.toInt() > kSchemaVersion) {
    return StorageError{StorageError::Kind::Newer,
                        Ui::tr("新しい版のプログラムで作られたデータベースです。"
                               "プログラムを更新してください。")};
  }
  return {};
}

}  // namespace

Result<std::shared_ptr<Connection>> Connection::Open(const QString& path, const QString& password,
                                                     Mode mode) {
  // The engine takes a file without so much as its random bytes for a new one; one of ours never
  // is.
  const QFileInfo file(path);
  if (mode != Mode::Create && file.exists() && file.size() < FileKey::kSaltBytes) {
    return StorageError{StorageError::Kind::Damaged,
                        file.size() == 0 ? Ui::tr("ファイルが空です。中身が失われています。")
                                         : Ui::tr("ファイルが途中で切れています。")};
  }
  UseOwnLocks();
  std::shared_ptr<Connection> connection(new Connection);
  connection->path_ = path;
  const QByteArray name = mode == Mode::WithoutLog ? UriWithoutLog(path) : path.toUtf8();
  if (sqlite3_open_v2(name.constData(), &connection->handle_, OpenFlags(mode), nullptr) !=
      SQLITE_OK) {
    return EngineError(connection->handle_);
  }
  // The engine itself looks at the log when it first reads.
  const bool looks = mode == Mode::Existing || mode == Mode::ReadOnly;
  Result<> opened;
  if (looks) opened = LookAtLog(*connection, path, password, mode == Mode::Existing);
  if (opened) opened = connection->SetUp(password);
  if (opened) return connection;
  if (opened.Error().kind == StorageError::Kind::WrongPassword &&
      PageMarks(connection->handle_, password).FitFile()) {
    return StorageError{StorageError::Kind::Damaged, Ui::tr("ファイルの先頭が壊れています。")};
  }
  return opened.Error();
}

Connection::~Connection() {
  EndRecordsets();
  statements_.Clear();
  sqlite3_close_v2(handle_);
}

Result<> Connection::SetUp(const QString& password) {
  sqlite3_extended_result_codes(handle_, 1);
  waits_.Register(handle_);
  QByteArray salt = FileSalt(handle_);
  if (salt.isEmpty()) salt = FileKey::NewSalt(password);  // a file that is being made
  const QByteArray key = FileKey::ForEngine(password, salt);
  sqlite3_key(handle_, key.constData(), static_cast<int>(key.size()));
  // Later engines have another default format; ours stays the same everywhere.
  if (Scalar("PRAGMA cipher_version").toString().startsWith(u'4')) {
    std::ignore = Run("PRAGMA cipher_compatibility = 3");
  }
  std::ignore = Run("PRAGMA cipher_page_size = 4096");  // a wrong form is seen in the next line
  if (const Result<> fits = CheckFormat(*this); !fits) return fits;
  // What only reads has a log already, or none; the others are for speed, and never fail.
  for (const char* pragma : {"journal_mode = WAL", "synchronous = NORMAL",
                             "wal_autocheckpoint = 1000", "cache_size = -32768"}) {
    std::ignore = Run(QByteArray("PRAGMA ") + pragma);
  }
  RegisterDialectFunctions(handle_, &waits_.Deadline());
  RegisterBoundedFunctions(handle_, &waits_.Deadline());
  guard_.Register(handle_);
  return {};
}

bool Connection::Fail() {
  const StorageError error = EngineError(handle_);
  return FailWith(error, error.kind == StorageError::Kind::Damaged ? kDamagedFile : QString());
}

bool Connection::FailWith(const StorageError& error, const QString& damaged) {
  error_ = error;
  if (!damaged.isEmpty()) damage_.insert(damaged);
  return false;
}

std::unique_ptr<Statement> Connection::Prepare(const QByteArray& sql, StatementTrust trust) {
  const QByteArray key = (trust == StatementTrust::System ? kSystemKey : kUserKey) + sql;
  if (sqlite3_stmt* idle = statements_.Take(key)) {
    return std::make_unique<Statement>(*this, key, idle, trust);
  }
  sqlite3_stmt* handle = nullptr;
  const char* tail = nullptr;
  guard_.SetTrust(trust);
  const int result =
      sqlite3_prepare_v2(handle_, sql.constData(), static_cast<int>(sql.size()), &handle, &tail);
  guard_.SetTrust(StatementTrust::System);
  if (result != SQLITE_OK) {
    Fail();
    return nullptr;
  }
  const bool isWhole =
      QByteArrayView(tail, sql.constData() + sql.size() - tail).trimmed().isEmpty();
  if (handle == nullptr || !isWhole) {
    sqlite3_finalize(handle);
    error_ = {StorageError::Kind::BadStatement, Ui::tr("実行できる文は一つだけです。")};
    return nullptr;
  }
  if (trust == StatementTrust::UserCondition && !ReadsMessagesOnly(*this, handle, sql)) {
    sqlite3_finalize(handle);
    error_ = {StorageError::Kind::Refused, Ui::tr("条件に使えるのはメッセージの検索だけです。")};
    return nullptr;
  }
  return std::make_unique<Statement>(*this, key, handle, trust);
}

bool Connection::Run(const QByteArray& sql, const QVariantList& values) {
  const auto statement = Prepare(sql);
  if (statement == nullptr) return false;
  statement->Bind(values);
  Statement::Step step = Statement::Step::Row;
  while (step == Statement::Step::Row) step = statement->Next();
  return step == Statement::Step::Done;
}

QVariant Connection::Scalar(const QByteArray& sql, const QVariantList& values) {
  const auto statement = Prepare(sql);
  if (statement == nullptr) return {};
  statement->Bind(values);
  return statement->Next() == Statement::Step::Row ? statement->Value(0) : QVariant();
}

bool Connection::Begin() {
  const bool begun =
      depth_ == 0 ? Run("BEGIN IMMEDIATE") : Run("SAVEPOINT level" + QByteArray::number(depth_));
  if (begun && depth_++ == 0) {
    changesBefore_ = sqlite3_total_changes(handle_);
    roundBefore_ = LogRound(path_);
  }
  return begun;
}

bool Connection::Commit() {
  if (depth_ == 0) return false;
  if (depth_ > 1) {
    if (!Run("RELEASE level" + QByteArray::number(depth_ - 1))) return false;
    --depth_;
    return true;
  }
  const bool changed = sqlite3_total_changes(handle_) != changesBefore_;
  if ((changed && !CountChange(*this, path_, roundBefore_)) || !Run("COMMIT")) {
    const StorageError reason = error_;
    Rollback();
    error_ = reason;
    return false;
  }
  depth_ = 0;
  return true;
}

void Connection::Rollback() {
  if (depth_ == 0) return;
  --depth_;
  // The engine may have rolled back everything by itself, as it does when the disk is full.
  if (sqlite3_get_autocommit(handle_) != 0) {
    depth_ = 0;
    return;
  }
  const StorageError reason = error_;
  if (depth_ == 0) {
    std::ignore = Run("ROLLBACK");
  } else {
    const QByteArray name = "level" + QByteArray::number(depth_);
    std::ignore = Run("ROLLBACK TO " + name);
    std::ignore = Run("RELEASE " + name);
  }
  error_ = reason;
}

void Connection::EndRecordsets() {
  const auto open = recordsets_;
  for (Recordset* recordset : open) recordset->End();
  recordsets_.clear();
}

}  // namespace vorn
