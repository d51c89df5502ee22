#include "storage/work_count.h"

#include <algorithm>

#include "storage/connection.h"
#include "storage/log_state.h"

namespace vorn {
namespace {

bool HasColumns(Connection& connection) {
  return connection.Prepare("SELECT NUMBER, IN_FILE, LOG_ROUND FROM work_count") != nullptr;
}

// The table of earlier versions has the number alone.
bool MakeTable(Connection& connection) {
  return connection.Run(
             "CREATE TABLE IF NOT EXISTS work_count (ID INTEGER PRIMARY KEY, NUMBER INTEGER)") &&
         (HasColumns(connection) ||
          (connection.Run("ALTER TABLE work_count ADD COLUMN IN_FILE INTEGER") &&
           connection.Run("ALTER TABLE work_count ADD COLUMN LOG_ROUND BLOB")));
}

bool Write(Connection& connection, const WorkCount& count) {
  return connection.Run("DELETE FROM work_count") &&
         connection.Run(
             "INSERT INTO work_count (ID, NUMBER, IN_FILE, LOG_ROUND) VALUES (1, ?, ?, ?)",
             {count.number, count.inFile, count.logRound});
}

}  // namespace

std::optional<WorkCount> ReadWorkCount(Connection& connection) {
  const QVariant tables =
      connection.Scalar("SELECT COUNT(0) FROM sqlite_master WHERE NAME = 'work_count'");
  if (!tables.isValid()) return std::nullopt;
  WorkCount count;
  if (tables.toInt() == 0) return count;
  const QVariant number = connection.Scalar("SELECT COALESCE(MAX(NUMBER), 0) FROM work_count");
  if (!number.isValid()) return std::nullopt;
  count.number = number.toLongLong();
  const auto row = connection.Prepare("SELECT IN_FILE, LOG_ROUND FROM work_count");
  if (row != nullptr && row->Next() == Statement::Step::Row) {
    count.inFile = row->Value(0).toLongLong();
    count.logRound = row->Value(1).toByteArray();
  }
  return count;
}

// A round of the log begins when all of the one before has come into the file, so what had been
// counted then is in the file. That of the count's own writing is known only after it.
qint64 RaiseWorkCount(Connection& connection, const QString& path, qint64 least) {
  if (!connection.Begin()) return 0;
  const QByteArray before = LogRound(path);
  const std::optional<WorkCount> last = ReadWorkCount(connection);
  WorkCount next = last.value_or(WorkCount());
  next.number = std::max(next.number + 1, least);
  const bool isLater = !next.logRound.isEmpty() && next.logRound != before;
  if (last && (before.isEmpty() || isLater)) next.inFile = last->number;
  next.logRound.clear();
  if (!last || !MakeTable(connection) || !Write(connection, next) || !connection.Commit()) {
    connection.Rollback();
    return 0;
  }
  next.logRound = LogRound(path);
  if (next.logRound != before && !before.isEmpty()) next.inFile = last->number;
  // Without this less is known, no more. On the disk before anybody remembers the number: a machine
  // that stops in between must not leave a file that looks older.
  Write(connection, next);
  return connection.MakeDurable() ? next.number : 0;
}

bool LogFitsFile(const QString& path, const QString& password) {
  StorageError error;
  const auto alone = Connection::Open(path, password, Connection::Mode::WithoutLog, &error);
  const auto whole = Connection::Open(path, password, Connection::Mode::Unlooked, &error);
  if (alone == nullptr || whole == nullptr) return true;
  const std::optional<WorkCount> inFile = ReadWorkCount(*alone);
  const std::optional<WorkCount> inBoth = ReadWorkCount(*whole);
  return !inFile || !inBoth || inFile->number >= inBoth->inFile;
}

}  // namespace vorn
