#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <vector>

#include "storage/base/serial_id.h"
#include "storage/base/storage_error.h"

namespace vorn {

class Connection;
class Recordset;
class Statement;

using RecordsetPtr = std::shared_ptr<Recordset>;

/// How a result set is read: once from front to back, or with changes to its rows.
enum class CursorKind { Updatable = 2, ForwardOnly = 8 };

/// The rows of a SELECT statement. It stays usable after later statements, until the session
/// closes its database; from then on it is at its end.
///
/// A forward-only set reads its rows as they are asked for. An updatable one reads them all at
/// once and writes through `AddNew` or `Edit`, `SetField` and `Update`, or `Delete`.
class Recordset {
 public:
  /// Forward-only without a table to write to.
  Recordset(std::shared_ptr<Connection> connection, std::unique_ptr<Statement> statement,
            QString updatableTable = {});
  ~Recordset();
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  /// Whether there is no current row.
  bool Eof() const { return !hasRow_; }
  /// Whether reading stopped because of an error rather than at the end, a column of this row or of
  /// an earlier one could not be read as it was written, or a row could not be written.
  bool Failed() const { return static_cast<bool>(error_); }
  /// Whether this row is not as it was written.
  bool IsRowDamaged() const { return cutShort_; }
  /// The first failure.
  const StorageError& Error() const { return error_; }
  void MoveNext();

  /// A column of the current row; null for an unknown column. A long binary column is fetched here.
  QVariant Fields(QStringView column) const;
  /// The length of a long binary column, without reading it.
  /// Negative when it cannot be read.
  qint64 ByteCount(QStringView column) const;
  /// The first column of the current row as a number: what a question for a count answers.
  qint64 FirstNumber() const { return RawValue(0).toLongLong(); }
  /// The column "SERIALID" of the current row.
  SerialId Serial() const { return SerialIdOf(Fields(u"SERIALID")); }

  void AddNew();
  void Edit();
  void SetField(const QString& column, const QVariant& value);
  /// Writes the row begun by `AddNew` or `Edit`.
  [[nodiscard]] bool Update();
  /// Deletes the current row.
  [[nodiscard]] bool Delete();

  /// Lets go of the database; called when it is closed.
  void End();

 private:
  struct Column {
    QString name;
    bool longBinary;
  };
  enum class Pending { None, New, Edit };

  void ReadColumns();
  int FindColumn(QStringView name) const;
  QVariant RawValue(int column) const;
  void StepForward();
  bool IsCutShort() const;
  void NoteFailure() const;

  std::shared_ptr<Connection> connection_;
  std::unique_ptr<Statement> statement_;
  std::vector<Column> columns_;
  bool hasRow_ = false;
  bool endTells_ = false;  // the last column tells whether a row is whole
  int leastCut_ = 1;       // with at least so many bytes
  bool cutShort_ = false;
  mutable StorageError error_;

  // Updatable sets only. The first column of every row is its row number in the table.
  QString table_;
  std::vector<QVariantList> rows_;
  size_t current_ = 0;
  Pending pending_ = Pending::None;
  QStringList pendingNames_;
  QVariantList pendingValues_;
};

}  // namespace vorn
