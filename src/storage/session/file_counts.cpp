#include "storage/session/file_counts.h"

#include "storage/session/own_statement.h"

namespace vorn {
namespace {

const QByteArray kWorks = QByteArrayLiteral("work_count");
const QByteArray kOlder = QByteArrayLiteral("older_copy");

}  // namespace

Result<qint64> FileCounts::Number(const QByteArray& select) {
  const Result<RecordsetPtr> row = AskOwn(data_, select, {});
  if (!row) return row.Error();
  return (*row)->FirstNumber();
}

Result<bool> FileCounts::Has(const QByteArray& table) {
  const Result<qint64> tables =
      Number("SELECT COUNT(0) FROM sqlite_master WHERE NAME = '" + table + '\'');
  if (!tables) return tables.Error();
  return *tables > 0;
}

// A file that never counted has no table.
Result<qint64> FileCounts::Last(const QByteArray& table) {
  const Result<bool> has = Has(table);
  if (!has) return has.Error();
  return *has ? Number("SELECT MAX(NUMBER) FROM " + table) : 0;
}

Result<qint64> FileCounts::Messages() {
  return Number("SELECT COUNT(0) FROM mail");
}

Result<qint64> FileCounts::Changes() {
  return Last("change_mark");
}

Result<qint64> FileCounts::Works() {
  return Last(kWorks);
}

Result<> FileCounts::SetWorks(qint64 number) {
  Result<> set = RunOwn(
      data_, "CREATE TABLE IF NOT EXISTS " + kWorks + " (ID INTEGER PRIMARY KEY, NUMBER INTEGER)",
      {});
  if (set) set = RunOwn(data_, "DELETE FROM " + kWorks, {});
  if (set) set = RunOwn(data_, "INSERT INTO " + kWorks + " (ID, NUMBER) VALUES(1, ?1)", {number});
  return set;
}

Result<bool> FileCounts::IsOlderCopy() {
  return Has(kOlder);
}

Result<> FileCounts::MarkOlderCopy() {
  return RunOwn(data_, "CREATE TABLE IF NOT EXISTS " + kOlder + " (ID INTEGER PRIMARY KEY)", {});
}

}  // namespace vorn
