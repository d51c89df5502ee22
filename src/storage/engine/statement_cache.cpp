#include "storage/engine/statement_cache.h"

#include <utility>

#include "storage/engine/engine.h"

namespace vorn {
namespace {

constexpr int kIdleStatements = 64;

}  // namespace

void StatementCache::GiveBack(const QByteArray& key, sqlite3_stmt* handle) {
  if (idle_.size() >= kIdleStatements || idle_.contains(key)) {
    sqlite3_finalize(handle);
    return;
  }
  sqlite3_reset(handle);
  sqlite3_clear_bindings(handle);
  idle_.insert(key, handle);
}

void StatementCache::Clear() {
  for (sqlite3_stmt* statement : std::as_const(idle_)) sqlite3_finalize(statement);
  idle_.clear();
}

}  // namespace vorn
