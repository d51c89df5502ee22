#include "storage/engine/change_count.h"

#include <optional>

#include "storage/base/result.h"
#include "storage/engine/connection.h"
#include "storage/engine/engine.h"
#include "storage/engine/log_state.h"

namespace vorn {
namespace {

// A row for each transaction that the file alone may have come to: NUMBER counts them, MARK tells
// them from those of another history with the same numbers, IN_FILE is a number that the file alone
// has at least reached, and LOG_ROUND the round of the log when the transaction began (see
// `LogRound`).
constexpr char kTable[] =
    "CREATE TABLE IF NOT EXISTS change_mark (NUMBER INTEGER PRIMARY KEY, MARK BLOB, IN_FILE "
    "INTEGER, LOG_ROUND BLOB)";
constexpr char kFirst[] =
    "INSERT INTO change_mark (NUMBER, MARK, IN_FILE, LOG_ROUND) VALUES (1, randomblob(8), 0, ?)";

// Without a log all that was counted is in the file. A round begins when all of the one before has
// come into the file. If this transaction began it, then all that was counted before has; if that
// was since the last one, then all but that one. ?1 is the round when this transaction began, ?2
// that of now.
constexpr char kCount[] =
    "INSERT INTO change_mark (NUMBER, MARK, IN_FILE, LOG_ROUND) SELECT NUMBER + 1, randomblob(8), "
    "CASE WHEN ?1 = x'' OR ?1 <> ?2 THEN NUMBER WHEN ?1 <> LOG_ROUND THEN NUMBER - 1 ELSE IN_FILE "
    "END, ?2 FROM change_mark ORDER BY NUMBER DESC LIMIT 1";
constexpr char kForget[] =
    "DELETE FROM change_mark WHERE NUMBER < (SELECT IN_FILE FROM change_mark ORDER BY NUMBER DESC "
    "LIMIT 1)";

QByteArray NotNull(const QByteArray& round) {
  return round.isNull() ? QByteArrayLiteral("") : round;
}

struct State {
  qint64 number = 0;
  qint64 inFile = 0;
  QByteArray mark;
  QByteArray logRound;
};

// The last transaction, or with a number that one; all zero where there is none.
std::optional<State> Read(Connection& connection, const QByteArray& which = "1") {
  const QVariant tables =
      connection.Scalar("SELECT COUNT(0) FROM sqlite_master WHERE NAME = 'change_mark'");
  if (!tables.isValid()) return std::nullopt;
  State state;
  if (tables.toInt() == 0) return state;
  const auto row =
      connection.Prepare("SELECT NUMBER, IN_FILE, MARK, LOG_ROUND FROM change_mark WHERE " + which +
                         " ORDER BY NUMBER DESC LIMIT 1");
  const auto step = row == nullptr ? Statement::Step::Failed : row->Next();
  if (step == Statement::Step::Failed) return std::nullopt;
  if (step == Statement::Step::Done) return state;
  state.number = row->Value(0).toLongLong();
  state.inFile = row->Value(1).toLongLong();
  state.mark = row->Value(2).toByteArray();
  state.logRound = row->Value(3).toByteArray();
  return state;
}

// The file together with its log.
struct Whole {
  State last;
  QByteArray markThen;  // of the transaction that the file alone has come to
};

// Fails when the two make no database.
Result<Whole> ReadWhole(const QString& path, const QString& password, qint64 numberThen) {
  const auto opened = Connection::Open(path, password, Connection::Mode::Unlooked);
  if (!opened) return opened.Error();
  Connection& connection = **opened;
  const auto last = Read(connection);
  const auto then = Read(connection, "NUMBER = " + QByteArray::number(numberThen));
  if (!last || !then) return connection.LastError();
  return Whole{*last, then->mark};
}

bool MeansNoDatabase(StorageError::Kind kind) {
  return kind == StorageError::Kind::Damaged || kind == StorageError::Kind::WrongPassword ||
         kind == StorageError::Kind::Foreign;
}

}  // namespace

bool CountChange(Connection& connection, const QString& path, const QByteArray& roundBefore) {
  const QByteArray round = NotNull(LogRound(path));
  const auto count = connection.Prepare(kCount);
  if (count != nullptr) {
    count->Bind({NotNull(roundBefore), round});
    if (count->Next() != Statement::Step::Done) return false;
    if (sqlite3_changes(connection.Handle()) > 0) return connection.Run(kForget);
  }
  return connection.Run(kTable) && connection.Run(kFirst, {round});
}

// The last transaction itself may have begun the round that the log is in now.
bool LogFitsFile(const QString& path, const QString& password) {
  const auto alone = Connection::Open(path, password, Connection::Mode::WithoutLog);
  const std::optional<State> inFile = alone ? Read(**alone) : std::nullopt;
  if (!inFile) return true;
  const Result<Whole> whole = ReadWhole(path, password, inFile->number);
  // What is sound by itself is not damaged by its own log.
  if (!whole) return !MeansNoDatabase(whole.Error().kind);
  const State& last = whole->last;
  const bool isSameRound = last.logRound == LogRound(path);
  return inFile->mark == whole->markThen &&
         inFile->number >= (isSameRound ? last.inFile : last.number - 1);
}

}  // namespace vorn
