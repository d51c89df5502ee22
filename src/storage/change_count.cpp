#include "storage/change_count.h"

#include <optional>

#include "storage/connection.h"
#include "storage/log_state.h"

namespace vorn {
namespace {

// NUMBER counts the transactions, IN_FILE is a number that the file alone has at least reached, and
// LOG_ROUND the round of the log when the last transaction began (see `LogRound`).
constexpr char kTable[] =
    "CREATE TABLE IF NOT EXISTS change_count (ID INTEGER PRIMARY KEY, NUMBER INTEGER, IN_FILE "
    "INTEGER, LOG_ROUND BLOB)";

// Without a log all that was counted is in the file. A round begins when all of the one before has
// come into the file. If this transaction began it, then all that was counted before has; if that
// was since the last one, then all but that one. ?1 is the round when this transaction began, ?2
// that of now.
constexpr char kCount[] =
    "UPDATE change_count SET IN_FILE = CASE WHEN ?1 = x'' OR ?1 <> ?2 THEN NUMBER WHEN ?1 <> "
    "LOG_ROUND THEN NUMBER - 1 ELSE IN_FILE END, NUMBER = NUMBER + 1, LOG_ROUND = ?2";

QByteArray NotNull(const QByteArray& round) {
  return round.isNull() ? QByteArrayLiteral("") : round;
}

struct State {
  qint64 number = 0;
  qint64 inFile = 0;
  QByteArray logRound;
};

std::optional<State> Read(Connection& connection) {
  const QVariant tables =
      connection.Scalar("SELECT COUNT(0) FROM sqlite_master WHERE NAME = 'change_count'");
  if (!tables.isValid()) return std::nullopt;
  State state;
  if (tables.toInt() == 0) return state;
  const auto row = connection.Prepare("SELECT NUMBER, IN_FILE, LOG_ROUND FROM change_count");
  if (row == nullptr || row->Next() != Statement::Step::Row) return std::nullopt;
  state.number = row->Value(0).toLongLong();
  state.inFile = row->Value(1).toLongLong();
  state.logRound = row->Value(2).toByteArray();
  return state;
}

}  // namespace

bool CountChange(Connection& connection, const QString& path, const QByteArray& roundBefore) {
  const QByteArray round = NotNull(LogRound(path));
  const auto count = connection.Prepare(kCount);
  if (count != nullptr) {
    count->Bind({NotNull(roundBefore), round});
    if (count->Next() != Statement::Step::Done) return false;
    if (connection.Changes() > 0) return true;
  }
  return connection.Run(kTable) &&
         connection.Run(
             "INSERT INTO change_count (ID, NUMBER, IN_FILE, LOG_ROUND) VALUES (1, 1, 0, ?)",
             {round});
}

// The last transaction itself may have begun the round that the log is in now.
bool LogFitsFile(const QString& path, const QString& password) {
  StorageError error;
  const auto alone = Connection::Open(path, password, Connection::Mode::WithoutLog, &error);
  const auto whole = Connection::Open(path, password, Connection::Mode::Unlooked, &error);
  if (alone == nullptr || whole == nullptr) return true;
  const std::optional<State> inFile = Read(*alone);
  const std::optional<State> inBoth = Read(*whole);
  if (!inFile || !inBoth) return true;
  const bool isSameRound = inBoth->logRound == LogRound(path);
  // A log that knows less than the file is an older one.
  return inFile->number <= inBoth->number &&
         inFile->number >= (isSameRound ? inBoth->inFile : inBoth->number - 1);
}

}  // namespace vorn
