#pragma once

#include <QByteArray>

#include "storage/engine/statement.h"

struct sqlite3;
struct sqlite3_stmt;

namespace vorn {

class Connection;

/// Lets a statement that holds a condition of the user's read messages and nothing else.
class ConditionGuard {
 public:
  ConditionGuard() = default;
  ConditionGuard(const ConditionGuard&) = delete;
  ConditionGuard& operator=(const ConditionGuard&) = delete;

  /// Has the engine ask it about each statement; this must live as long as the handle.
  void Register(sqlite3* handle);
  /// Whose the statement is that is being prepared.
  void SetTrust(StatementTrust trust) { trust_ = trust; }

 private:
  static int Authorize(void* self, int action, const char* first, const char* second,
                       const char* database, const char* trigger);

  StatementTrust trust_ = StatementTrust::System;
};

/// Whether a prepared statement, whose text is `sql`, only reads messages, as its steps tell.
bool ReadsMessagesOnly(Connection& connection, sqlite3_stmt* handle, const QByteArray& sql);

}  // namespace vorn
