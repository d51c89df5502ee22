#include "storage/engine/condition_guard.h"

#include <QSet>
#include <algorithm>
#include <array>

#include "storage/engine/connection.h"
#include "storage/engine/engine.h"

namespace vorn {
namespace {

// What a condition may call besides operators. Anything not listed, such as the engine's export and
// extension loading functions, is refused.
constexpr std::array kReadingFunctions = {
    "like",     "contains", "addresses", "now",    "datediff", "long_binary", "abs",
    "coalesce", "count",    "date",      "ifnull", "instr",    "length",      "lower",
    "ltrim",    "max",      "min",       "nullif", "round",    "rtrim",       "strftime",
    "substr",   "sum",      "time",      "trim",   "upper",    "avg",         "replace"};

bool IsAnyOf(const char* name, std::initializer_list<const char*> names) {
  return name != nullptr && std::any_of(names.begin(), names.end(), [name](const char* candidate) {
           return sqlite3_stricmp(name, candidate) == 0;
         });
}

}  // namespace

void ConditionGuard::Register(sqlite3* handle) {
  sqlite3_set_authorizer(handle, Authorize, this);
}

int ConditionGuard::Authorize(void* self, int action, const char* first, const char* second,
                              const char*, const char*) {
  if (static_cast<ConditionGuard*>(self)->trust_ == StatementTrust::System) return SQLITE_OK;
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

// The authorizer is not asked about VACUUM, and by engines before 3.20 not about a table of which
// no column is read, such as one whose rows are counted: the statement's steps tell.
bool ReadsMessagesOnly(Connection& connection, sqlite3_stmt* handle, const QByteArray& sql) {
  if (sqlite3_stmt_readonly(handle) == 0 || sqlite3_column_count(handle) == 0) return false;
  if (sql.startsWith("EXPLAIN ")) return true;  // opens nothing, and cannot be explained itself
  QSet<qint64> pages;                           // where what may be opened begins
  const auto allowed = connection.Prepare(
      "SELECT rootpage FROM sqlite_master WHERE LOWER(tbl_name) IN ('mail', 'folder')");
  while (allowed != nullptr && allowed->Next() == Statement::Step::Row) {
    pages.insert(allowed->Value(0).toLongLong());
  }
  sqlite3_stmt* steps = nullptr;
  bool isAllowed = sqlite3_prepare_v2(connection.Handle(), ("EXPLAIN " + sql).constData(), -1,
                                      &steps, nullptr) == SQLITE_OK;
  while (isAllowed && sqlite3_step(steps) == SQLITE_ROW) {
    const auto* opcode = reinterpret_cast<const char*>(sqlite3_column_text(steps, 1));
    isAllowed = !IsAnyOf(opcode, {"OpenRead", "ReopenIdx"}) ||
                pages.contains(sqlite3_column_int64(steps, 3));
  }
  sqlite3_finalize(steps);
  return isAllowed;
}

}  // namespace vorn
