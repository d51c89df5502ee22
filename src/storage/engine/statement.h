#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

struct sqlite3_stmt;

namespace vorn {

class Connection;

/// Whose text a statement is: the system's own, or one that holds a condition the user wrote,
/// which may only read messages, and for a limited time.
enum class StatementTrust { System, UserCondition };

/// A prepared statement on loan from its connection, which gets it back, reset, at the end.
class Statement {
 public:
  enum class Step { Row, Done, Failed };

  Statement(Connection& connection, QByteArray cacheKey, sqlite3_stmt* handle,
            StatementTrust trust);
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  void Bind(const QVariantList& values);
  Step Next();
  int ColumnCount() const;
  QString ColumnName(int column) const;
  /// Whether the column holds a reference to data kept in a table of its own.
  bool IsLongBinary(int column) const;
  QVariant Value(int column) const;
  /// Whether the column is a text of at least so many bytes whose last character is zero.
  bool EndsWithNul(int column, int least = 1) const;

 private:
  Connection& connection_;
  QByteArray cacheKey_;
  sqlite3_stmt* handle_;
  StatementTrust trust_;
  qint64 spentMs_ = 0;  // by a condition of the user's
  QVariantList bound_;  // keeps the bytes alive that the engine was only lent
};

}  // namespace vorn
