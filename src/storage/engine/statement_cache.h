#pragma once

#include <QByteArray>
#include <QHash>

struct sqlite3_stmt;

namespace vorn {

/// A connection's prepared statements that nobody uses at the moment, by whose they are and their
/// text.
class StatementCache {
 public:
  /// One that was kept; null when there is none.
  sqlite3_stmt* Take(const QByteArray& key) { return idle_.take(key); }
  /// Keeps a statement, reset, or ends it when enough are kept.
  void GiveBack(const QByteArray& key, sqlite3_stmt* handle);
  /// Ends all.
  void Clear();

 private:
  QHash<QByteArray, sqlite3_stmt*> idle_;
};

}  // namespace vorn
