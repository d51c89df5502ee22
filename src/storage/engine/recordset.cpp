#include "storage/engine/recordset.h"

#include "storage/engine/connection.h"
#include "storage/engine/long_binary_table.h"
#include "storage/engine/schema.h"
#include "storage/files/found_damage.h"
#include "storage/ui.h"

namespace vorn {

Recordset::Recordset(std::shared_ptr<Connection> connection, std::unique_ptr<Statement> statement,
                     QString updatableTable)
    : connection_(std::move(connection)),
      statement_(std::move(statement)),
      table_(std::move(updatableTable)) {
  connection_->Attach(this);
  ReadColumns();
  StepForward();
  if (table_.isEmpty()) return;
  for (; hasRow_; StepForward()) {
    QVariantList row;
    for (int i = 0; i < statement_->ColumnCount(); ++i) row.append(statement_->Value(i));
    rows_.push_back(std::move(row));
  }
  statement_.reset();
  hasRow_ = !rows_.empty();
}

Recordset::~Recordset() {
  End();
}

void Recordset::End() {
  if (connection_ == nullptr) return;
  connection_->Detach(this);
  statement_.reset();
  connection_.reset();
  hasRow_ = false;
}

void Recordset::ReadColumns() {
  for (int i = 0; i < statement_->ColumnCount(); ++i) {
    columns_.push_back({statement_->ColumnName(i), statement_->IsLongBinary(i)});
  }
  const QString& last = columns_.back().name;
  endTells_ = last == u"FIELD_FLAG" || last == u"PROPERTY";
  leastCut_ = last == u"PROPERTY" ? kLeastSpread : 1;
}

void Recordset::StepForward() {
  const Statement::Step step = statement_->Next();
  hasRow_ = step == Statement::Step::Row;
  if (step == Statement::Step::Failed) NoteFailure();
  cutShort_ = hasRow_ && IsCutShort();
  if (cutShort_) {
    connection_->FailWith({StorageError::Kind::Damaged, Ui::tr("データが壊れています。")},
                          kDamagedFile);
    NoteFailure();
  }
}

// Of a row that fills several pages the last may come as zeros (see `IsAsWritten`); then the
// table's last column, which is never empty, ends with them.
bool Recordset::IsCutShort() const {
  return endTells_ && statement_->EndsWithNul(static_cast<int>(columns_.size()) - 1, leastCut_);
}

void Recordset::NoteFailure() const {
  if (!error_) error_ = connection_->LastError();
}

void Recordset::MoveNext() {
  if (!hasRow_) return;
  if (table_.isEmpty()) {
    StepForward();
  } else {
    hasRow_ = ++current_ < rows_.size();
  }
}

int Recordset::FindColumn(QStringView name) const {
  for (size_t i = 0; i < columns_.size(); ++i) {
    const QString& column = columns_[i].name;
    const bool isIt =
        name.size() == column.size() && name.compare(column, Qt::CaseInsensitive) == 0;
    if (isIt) return static_cast<int>(i);
  }
  return -1;
}

QVariant Recordset::RawValue(int column) const {
  if (!hasRow_ || column < 0) return {};
  return table_.isEmpty() ? statement_->Value(column) : rows_[current_][column];
}

QVariant Recordset::Fields(QStringView name) const {
  const int column = FindColumn(name);
  const QVariant value = RawValue(column);
  if (column < 0 || !columns_[static_cast<size_t>(column)].longBinary || !value.isValid()) {
    return value;
  }
  const Result<QByteArray> bytes = LongBinaryTable(*connection_).Read(value.toLongLong());
  if (bytes) return *bytes;
  NoteFailure();
  return {};
}

qint64 Recordset::ByteCount(QStringView name) const {
  const QVariant value = RawValue(FindColumn(name));
  return value.isValid() ? LongBinaryTable(*connection_).Size(value.toLongLong()) : 0;
}

void Recordset::AddNew() {
  pending_ = Pending::New;
  pendingNames_.clear();
  pendingValues_.clear();
}

void Recordset::Edit() {
  AddNew();
  pending_ = hasRow_ ? Pending::Edit : Pending::None;
}

void Recordset::SetField(const QString& column, const QVariant& value) {
  pendingNames_.append(column);
  pendingValues_.append(value);
}

bool Recordset::Update() {
  if (pending_ == Pending::None || connection_ == nullptr || table_.isEmpty()) return false;
  qint64 number = 0;
  for (qsizetype i = 0; i < pendingNames_.size(); ++i) {
    const int column = FindColumn(pendingNames_[i]);
    if (column < 0) return false;
    if (!columns_[static_cast<size_t>(column)].longBinary) continue;
    // The old data goes when the row stops referring to it.
    const qint64 id = LongBinaryTable(*connection_).Write(pendingValues_[i].toByteArray());
    if (id == 0) {
      NoteFailure();
      return false;
    }
    pendingValues_[i] = number = id;
  }
  QByteArray sql;
  if (pending_ == Pending::New) {
    // The row has the number of its data, so that it is never given again either.
    if (number != 0) {
      pendingNames_.append(QStringLiteral("rowid"));
      pendingValues_.append(number);
    }
    QByteArray marks = "?";
    for (qsizetype i = 1; i < pendingNames_.size(); ++i) marks += ",?";
    sql = "INSERT INTO " + table_.toUtf8() + " (" + pendingNames_.join(u',').toUtf8() +
          ") VALUES (" + marks + ")";
  } else {
    sql = "UPDATE " + table_.toUtf8() + " SET " +
          pendingNames_.join(QStringLiteral(" = ?, ")).toUtf8() + " = ? WHERE rowid = ?";
    pendingValues_.append(rows_[current_][0]);
  }
  pending_ = Pending::None;
  const bool written = connection_->Run(sql, pendingValues_);
  if (!written) NoteFailure();
  return written;
}

bool Recordset::Delete() {
  if (!hasRow_ || table_.isEmpty()) return false;
  return connection_->Run("DELETE FROM " + table_.toUtf8() + " WHERE rowid = ?",
                          {rows_[current_][0]});
}

}  // namespace vorn
