#include "storage/connection.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>
#include <QUrl>
#include <algorithm>
#include <array>

#include "storage/change_count.h"
#include "storage/condition_limit.h"
#include "storage/engine.h"
#include "storage/engine_locks.h"
#include "storage/file_key.h"
#include "storage/file_lock.h"
#include "storage/known_damage.h"
#include "storage/log_state.h"
#include "storage/raw_pages.h"
#include "storage/recordset.h"
#include "storage/schema.h"
#include "storage/sole_use.h"
#include "storage/source_digest.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kIdleStatements = 64;
constexpr int kBusyTimeoutMs = 5000;
constexpr int kBusyPauseMs = 1;
constexpr int kStepsBetweenLooks = 500;              // each may take long
constexpr qint64 kMostMemory = 768LL * 1024 * 1024;  // of the engine, while a condition runs
// What statements are kept under begins with whose they are.
constexpr char kSystemKey = 's';
constexpr char kUserKey = 'u';
constexpr int kLookWaitMs = 20000;  // a look takes a moment

// What a condition may call besides operators. Anything not listed, such as the engine's export and
// extension loading functions, is refused.
constexpr std::array kReadingFunctions = {
    "like",     "contains", "addresses", "now",    "datediff", "long_binary", "abs",
    "coalesce", "count",    "date",      "ifnull", "instr",    "length",      "lower",
    "ltrim",    "max",      "min",       "nullif", "round",    "rtrim",       "strftime",
    "substr",   "sum",      "time",      "trim",   "upper",    "avg",         "replace"};

const QString kDamagedFile = QStringLiteral("file");
const QString kDamagedLog = QStringLiteral("log");
const QString kDamagedSource = QStringLiteral("source ");

QString DamagedSourceText() {
  return Ui::tr("メッセージのデータが壊れています。");
}

// The engine gives zeros for a page that it cannot decrypt and for one that was overwritten with
// zeros. Where such a page is the last one of a source, nothing else shows it; no mail ends so.
bool IsAsWritten(const QByteArray& bytes, const QByteArray& digest) {
  return digest.isEmpty() ? !bytes.endsWith('\0') : digest == SourceDigest(bytes);
}

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

bool IsAnyOf(const char* name, std::initializer_list<const char*> names) {
  return name != nullptr && std::any_of(names.begin(), names.end(), [name](const char* candidate) {
           return sqlite3_stricmp(name, candidate) == 0;
         });
}

}  // namespace

std::shared_ptr<Connection> Connection::Open(const QString& path, const QString& password,
                                             Mode mode, StorageError* error) {
  // The engine takes an empty file for a new one; a file of ours is never empty.
  if (mode != Mode::Create && QFileInfo(path).size() == 0 && QFileInfo::exists(path)) {
    *error = {StorageError::Kind::Damaged, Ui::tr("ファイルが空です。中身が失われています。")};
    return nullptr;
  }
  UseOwnLocks();
  std::shared_ptr<Connection> connection(new Connection);
  connection->path_ = path;
  const QByteArray name = mode == Mode::WithoutLog ? UriWithoutLog(path) : path.toUtf8();
  if (sqlite3_open_v2(name.constData(), &connection->handle_, OpenFlags(mode), nullptr) !=
      SQLITE_OK) {
    *error = EngineError(connection->handle_);
    return nullptr;
  }
  // The engine itself looks at the log when it first reads.
  const bool looks = mode == Mode::Existing || mode == Mode::ReadOnly;
  const bool opened = (!looks || connection->LookAtLog(path, password, mode, error)) &&
                      connection->SetUp(password, error);
  if (opened) return connection;
  if (error->kind == StorageError::Kind::WrongPassword &&
      PageMarks(connection->handle_, password).FitFile()) {
    *error = {StorageError::Kind::Damaged, Ui::tr("ファイルの先頭が壊れています。")};
  }
  return nullptr;
}

bool Connection::LookAtLog(const QString& path, const QString& password, Mode mode,
                           StorageError* error) {
  const QString name = QFileInfo(path).fileName() + QStringLiteral("-wal");
  if (QFileInfo(path + QStringLiteral("-wal")).size() == 0) return true;
  // One at a time: who is only looking has not looked yet.
  FileLock looking(QFileInfo(path).dir().filePath(QStringLiteral("look.lock")));
  const FileLock::Result taken = looking.Take(FileLock::Kind::Exclusive, kLookWaitMs);
  if (taken == FileLock::Result::Held) {
    *error = {StorageError::Kind::Busy, Ui::tr("データベースが使用中です。")};
    return false;
  }
  if (taken == FileLock::Result::Failed && mode != Mode::ReadOnly) {
    *error = {StorageError::Kind::Other,
              Ui::tr("「look.lock」に書き込めません。フォルダの権限を確認してください。")};
    return false;
  }
  auto alone = std::make_unique<SoleUse>(path);
  if (!alone->IsTaken()) return true;  // whoever has it open looked, and is writing to it
  LoggedPage sample;
  LogState log = ReadLogState(path, FileSalt(handle_), &sample);
  if (log == LogState::Sound && sample.number != 0) {
    const PageMarks marks(handle_, password);
    if (!marks.IsMarked(sample.number, sample.bytes) && marks.FitFile()) log = LogState::Foreign;
  }
  if (log == LogState::Sound) {
    alone.reset();  // the engine's own reading takes its locks
    if (LogFitsFile(path, password)) return true;
    alone = std::make_unique<SoleUse>(path);
    if (!alone->IsTaken()) {
      *error = {StorageError::Kind::Busy, Ui::tr("データベースが使用中です。")};
      return false;
    }
    log = LogState::Foreign;
  }
  if (log < LogState::Torn) return true;
  if (log == LogState::Closed) {
    *error = {StorageError::Kind::Other, Ui::tr("記録ファイル「%1」を読み込めません。").arg(name)};
    return false;
  }
  damage_.insert(kDamagedLog);
  if (log == LogState::Torn) return true;
  // Noted first: once it is set aside nothing shows that there was one.
  if (mode != Mode::ReadOnly && NoteDamage(path, kDamagedLog) && SetLogAside(path)) return true;
  *error = {StorageError::Kind::Damaged,
            Ui::tr("記録ファイル「%1」が壊れているか、別のデータベースのものです。").arg(name)};
  return false;
}

Connection::~Connection() {
  EndRecordsets();
  for (sqlite3_stmt* statement : std::as_const(idle_)) sqlite3_finalize(statement);
  sqlite3_close_v2(handle_);
}

// The engine's own handler waits longer and longer, and so misses the gaps that a program leaves
// which stores much.
int Connection::WaitWhileBusy(void* self, int attempts) {
  QElapsedTimer& since = static_cast<Connection*>(self)->busySince_;
  if (attempts == 0) since.start();
  if (since.hasExpired(kBusyTimeoutMs)) return 0;
  QThread::msleep(kBusyPauseMs);
  return 1;
}

int Connection::IsOverdue(void* self) {
  const QDeadlineTimer& deadline = static_cast<Connection*>(self)->deadline_;
  // What is sorted or told apart lies in memory.
  const bool isLarge = !deadline.isForever() && sqlite3_memory_used() > kMostMemory;
  const bool ends = isLarge || deadline.hasExpired() || ConditionLimit::IsStopped();
  if (ends) ConditionLimit::NoteReached();
  return ends ? 1 : 0;
}

bool Connection::SetUp(const QString& password, StorageError* error) {
  sqlite3_extended_result_codes(handle_, 1);
  sqlite3_busy_handler(handle_, &Connection::WaitWhileBusy, this);
  sqlite3_progress_handler(handle_, kStepsBetweenLooks, &Connection::IsOverdue, this);
  QByteArray salt = FileSalt(handle_);
  if (salt.isEmpty()) salt = FileKey::NewSalt(password);  // a file that is being made
  const QByteArray key = FileKey::ForEngine(password, salt);
  sqlite3_key(handle_, key.constData(), static_cast<int>(key.size()));
  // Later engines have another default format; ours stays the same everywhere.
  if (Scalar("PRAGMA cipher_version").toString().startsWith(u'4')) {
    Run("PRAGMA cipher_compatibility = 3");
  }
  Run("PRAGMA cipher_page_size = 4096");
  if (!CheckFormat(error)) return false;
  Run("PRAGMA journal_mode = WAL");
  Run("PRAGMA synchronous = NORMAL");
  Run("PRAGMA wal_autocheckpoint = 1000");
  Run("PRAGMA cache_size = -32768");
  RegisterDialectFunctions(handle_, &deadline_);
  RegisterBoundedFunctions(handle_, &deadline_);
  sqlite3_set_authorizer(handle_, Authorize, this);
  return true;
}

// The first read, which is what tests the key.
bool Connection::CheckFormat(StorageError* error) {
  const QVariant version = Scalar("PRAGMA user_version");
  if (!version.isValid()) {
    *error = error_;
    return false;
  }
  const QVariant tables = Scalar("SELECT COUNT(0) FROM sqlite_master");
  if (!tables.isValid()) {
    *error = error_;
    return false;
  }
  schemaVersion_ = version.toInt();
  const int application = Scalar("PRAGMA application_id").toInt();
  if (tables.toInt() > 0 && application != kApplicationId) {
    *error = {StorageError::Kind::Foreign, Ui::tr("このプログラムのデータベースではありません。")};
    return false;
  }
  if (version.toInt() > kSchemaVersion) {
    *error = {StorageError::Kind::Newer, Ui::tr("新しい版のプログラムで作られたデータベースです。"
                                                "プログラムを更新してください。")};
    return false;
  }
  return true;
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
  if (sqlite3_stmt* idle = idle_.take(key))
    return std::make_unique<Statement>(*this, key, idle, trust);
  sqlite3_stmt* handle = nullptr;
  const char* tail = nullptr;
  preparing_ = trust;
  const int result =
      sqlite3_prepare_v2(handle_, sql.constData(), static_cast<int>(sql.size()), &handle, &tail);
  preparing_ = StatementTrust::System;
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
  if (trust == StatementTrust::UserCondition && !ReadsMessagesOnly(handle, sql)) {
    sqlite3_finalize(handle);
    error_ = {StorageError::Kind::Refused, Ui::tr("条件に使えるのはメッセージの検索だけです。")};
    return nullptr;
  }
  return std::make_unique<Statement>(*this, key, handle, trust);
}

// The authorizer is not asked about VACUUM, and by engines before 3.20 not about a table of which
// no column is read, such as one whose rows are counted: the statement's steps tell.
bool Connection::ReadsMessagesOnly(sqlite3_stmt* handle, const QByteArray& sql) {
  if (sqlite3_stmt_readonly(handle) == 0 || sqlite3_column_count(handle) == 0) return false;
  if (sql.startsWith("EXPLAIN ")) return true;  // opens nothing, and cannot be explained itself
  QSet<qint64> pages;                           // where what may be opened begins
  const auto allowed =
      Prepare("SELECT rootpage FROM sqlite_master WHERE LOWER(tbl_name) IN ('mail', 'folder')");
  while (allowed != nullptr && allowed->Next() == Statement::Step::Row) {
    pages.insert(allowed->Value(0).toLongLong());
  }
  sqlite3_stmt* steps = nullptr;
  bool isAllowed =
      sqlite3_prepare_v2(handle_, ("EXPLAIN " + sql).constData(), -1, &steps, nullptr) == SQLITE_OK;
  while (isAllowed && sqlite3_step(steps) == SQLITE_ROW) {
    const auto* opcode = reinterpret_cast<const char*>(sqlite3_column_text(steps, 1));
    isAllowed = !IsAnyOf(opcode, {"OpenRead", "ReopenIdx"}) ||
                pages.contains(sqlite3_column_int64(steps, 3));
  }
  sqlite3_finalize(steps);
  return isAllowed;
}

void Connection::GiveBack(const QByteArray& cacheKey, sqlite3_stmt* handle) {
  if (idle_.size() >= kIdleStatements || idle_.contains(cacheKey)) {
    sqlite3_finalize(handle);
    return;
  }
  sqlite3_reset(handle);
  sqlite3_clear_bindings(handle);
  idle_.insert(cacheKey, handle);
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
    Run("ROLLBACK");
  } else {
    const QByteArray name = "level" + QByteArray::number(depth_);
    Run("ROLLBACK TO " + name);
    Run("RELEASE " + name);
  }
  error_ = reason;
}

// What was committed stands in the write-ahead log, from where it is found again after a crash of
// the machine, so it is enough to bring the log to the disk.
bool Connection::MakeDurable() {
  sqlite3_file* log = nullptr;
  const bool hasLog =
      sqlite3_file_control(handle_, "main", SQLITE_FCNTL_JOURNAL_POINTER, &log) == SQLITE_OK &&
      log != nullptr && log->pMethods != nullptr;
  if (!hasLog) return CheckPoint();
  if (log->pMethods->xSync(log, SQLITE_SYNC_FULL) == SQLITE_OK) return true;
  error_ = {StorageError::Kind::Other, Ui::tr("ディスクに書き込めません。")};
  return false;
}

bool Connection::CheckPoint() {
  const auto statement = Prepare("PRAGMA wal_checkpoint(FULL)");
  if (statement == nullptr || statement->Next() != Statement::Step::Row) return false;
  // Columns: blocked, frames in the log, frames written to the file. A reader in another process
  // can hold the last frames back; then nothing may depend on them yet.
  const bool complete =
      statement->Value(0).toInt() == 0 && statement->Value(1) == statement->Value(2);
  if (!complete) {
    error_ = {StorageError::Kind::Busy, Ui::tr("データベースが使用中です。")};
  }
  return complete;
}

bool Connection::ChangeKey(const QString& newPassword) {
  // Out of the log first: the key change then rewrites the file in one ordinary transaction.
  if (Scalar("PRAGMA journal_mode = DELETE").toString() != u"delete") {
    error_ = {StorageError::Kind::Busy, Ui::tr("データベースが使用中です。")};
    return false;
  }
  for (sqlite3_stmt* statement : std::as_const(idle_)) sqlite3_finalize(statement);
  idle_.clear();
  const QByteArray salt = FileKey::NewSalt(newPassword, FileSalt(handle_));
  const QByteArray key = FileKey::ForEngine(newPassword, salt);
  if (sqlite3_rekey(handle_, key.constData(), static_cast<int>(key.size())) != SQLITE_OK) {
    return Fail();
  }
  // The engine calls it done also where it had to take it back, as on a page that it cannot read.
  if (salt.isEmpty() || FileSalt(handle_) == salt) return true;
  const StorageError error{
      StorageError::Kind::Damaged,
      Ui::tr("ファイルを新しい鍵で書き直せません。ディスクの空き容量と、ファイルが壊れていないかを"
             "確認してください。")};
  return FailWith(error, {});
}

bool Connection::TakeExclusively() {
  if (Scalar("PRAGMA journal_mode = DELETE").toString() != u"delete") {
    error_ = {StorageError::Kind::Busy, Ui::tr("データベースが使用中です。")};
    return false;
  }
  if (!Run("BEGIN EXCLUSIVE")) return false;
  depth_ = 1;
  return true;
}

// Another connection's counts start anew, so its address belongs to the mark.
QString Connection::ChangeMark() {
  return OthersMark() + u' ' + QString::number(sqlite3_total_changes(handle_));
}

QString Connection::OthersMark() {
  return QStringLiteral("%1 %2")
      .arg(reinterpret_cast<quintptr>(this))
      .arg(Scalar("PRAGMA data_version").toLongLong());
}

int Connection::Changes() const {
  return sqlite3_changes(handle_);
}

qint64 Connection::LastRowId() const {
  return sqlite3_last_insert_rowid(handle_);
}

std::optional<QByteArray> Connection::ReadLongBinary(qint64 id) {
  error_ = {};
  const bool wasBroken = damage_.contains(kDamagedFile);
  QByteArray digest;
  std::optional<QByteArray> bytes = ReadWithDigest(id, &digest);
  if (bytes && IsAsWritten(*bytes, digest)) return bytes;
  // One that cannot be found or read is damaged, whatever the engine calls it, and it alone: as the
  // whole file it would take back what the user decided on this source.
  if (error_.kind != StorageError::Kind::Busy) {
    if (!wasBroken) damage_.remove(kDamagedFile);
    FailWith({StorageError::Kind::Damaged, DamagedSourceText()},
             kDamagedSource + QString::number(id));
  }
  return std::nullopt;
}

// One statement is faster than the engine's handle on a single value, which spares large data a
// copy.
std::optional<QByteArray> Connection::ReadWithDigest(qint64 id, QByteArray* digest) {
  const auto row = Prepare(
      "SELECT DIGEST, CASE WHEN LENGTH(DATA) <= 1000000 THEN DATA END FROM long_binary WHERE ID = "
      "?");
  // The tables of an earlier version have no digests.
  if (row == nullptr) {
    return error_.kind == StorageError::Kind::BadStatement ? ReadLarge(id) : std::nullopt;
  }
  row->Bind({id});
  if (row->Next() != Statement::Step::Row) return std::nullopt;
  *digest = row->Value(0).toByteArray();
  const QVariant data = row->Value(1);
  if (digest->isEmpty() && !ReadLateDigest(id, digest)) return std::nullopt;
  return data.isValid() ? data.toByteArray() : ReadLarge(id);
}

std::optional<QByteArray> Connection::ReadLarge(qint64 id) {
  sqlite3_blob* blob = nullptr;
  std::optional<QByteArray> bytes;
  if (sqlite3_blob_open(handle_, "main", "long_binary", "DATA", id, 0, &blob) == SQLITE_OK) {
    bytes.emplace(sqlite3_blob_bytes(blob), Qt::Uninitialized);
    const int size = static_cast<int>(bytes->size());
    if (sqlite3_blob_read(blob, bytes->data(), size, 0) != SQLITE_OK) bytes.reset();
  }
  if (!bytes) Fail();
  sqlite3_blob_close(blob);
  return bytes;
}

// False when it cannot be known whether there is one.
bool Connection::ReadLateDigest(qint64 id, QByteArray* digest) {
  error_ = {};
  *digest = Scalar("SELECT DIGEST FROM late_digest WHERE ID = ?", {id}).toByteArray();
  return !error_ || error_.kind == StorageError::Kind::BadStatement;
}

qint64 Connection::LongBinarySize(qint64 id) {
  sqlite3_blob* blob = nullptr;
  qint64 size = -1;
  if (sqlite3_blob_open(handle_, "main", "long_binary", "DATA", id, 0, &blob) == SQLITE_OK) {
    size = sqlite3_blob_bytes(blob);
  } else {
    Fail();
  }
  sqlite3_blob_close(blob);
  return size;
}

qint64 Connection::WriteLongBinary(const QByteArray& data) {
  // A number that was given once is not given again, whatever is seen of the entries.
  return Run("UPDATE long_binary_last SET ID = MAX(ID, COALESCE((SELECT MAX(ID) FROM long_binary), "
             "0)) + 1") &&
                 Run("INSERT INTO long_binary (ID, DIGEST, DATA) VALUES ((SELECT ID FROM "
                     "long_binary_last), ?, ?)",
                     {SourceDigest(data), data})
             ? LastRowId()
             : 0;
}

void Connection::EndRecordsets() {
  const auto open = recordsets_;
  for (Recordset* recordset : open) recordset->End();
  recordsets_.clear();
}

int Connection::Authorize(void* self, int action, const char* first, const char* second,
                          const char*, const char*) {
  if (static_cast<Connection*>(self)->preparing_ == StatementTrust::System) return SQLITE_OK;
  switch (action) {
    case SQLITE_SELECT:
      return SQLITE_OK;
    case SQLITE_READ:
      return IsAnyOf(first, {"mail", "folder"}) ? SQLITE_OK : SQLITE_DENY;
    case SQLITE_FUNCTION:
      return std::any_of(kReadingFunctions.begin(), kReadingFunctions.end(),
                         [second](const char* name) { return IsAnyOf(second, {name}); })
                 ? SQLITE_OK
                 : SQLITE_DENY;
    default:
      return SQLITE_DENY;
  }
}

}  // namespace vorn
