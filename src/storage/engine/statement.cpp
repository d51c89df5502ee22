#include "storage/engine/statement.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <limits>
#include <string_view>
#include <utility>

#include "storage/engine/condition_limit.h"
#include "storage/engine/connection.h"
#include "storage/engine/engine.h"
#include "storage/engine/schema.h"

namespace vorn {

Statement::Statement(Connection& connection, QByteArray cacheKey, sqlite3_stmt* handle,
                     StatementTrust trust)
    : connection_(connection), cacheKey_(std::move(cacheKey)), handle_(handle), trust_(trust) {}

Statement::~Statement() {
  connection_.Statements().GiveBack(cacheKey_, handle_);
}

void Statement::Bind(const QVariantList& values) {
  bound_.clear();
  for (int i = 0; i < values.size(); ++i) {
    const QVariant& value = values[i];
    switch (value.typeId()) {
      case QMetaType::UnknownType:
        sqlite3_bind_null(handle_, i + 1);
        break;
      case QMetaType::Int:
      case QMetaType::LongLong:
      case QMetaType::Short:
      case QMetaType::Bool:
        sqlite3_bind_int64(handle_, i + 1, value.toLongLong());
        break;
      case QMetaType::Double:
        sqlite3_bind_double(handle_, i + 1, value.toDouble());
        break;
      case QMetaType::QByteArray: {
        bound_.append(value);
        const auto* bytes = static_cast<const QByteArray*>(bound_.back().constData());
        sqlite3_bind_blob64(handle_, i + 1, bytes->constData(),
                            static_cast<sqlite3_uint64>(bytes->size()), SQLITE_STATIC);
        break;
      }
      default: {
        const QByteArray text = value.toString().toUtf8();
        sqlite3_bind_text64(handle_, i + 1, text.constData(),
                            static_cast<sqlite3_uint64>(text.size()), SQLITE_TRANSIENT,
                            SQLITE_UTF8);
      }
    }
  }
}

Statement::Step Statement::Next() {
  const bool isLimited = trust_ == StatementTrust::UserCondition;
  QElapsedTimer clock;
  clock.start();
  QDeadlineTimer& deadline = connection_.Waits().Deadline();
  if (isLimited) deadline.setRemainingTime(qMax<qint64>(0, ConditionLimit::Ms() - spentMs_));
  const int result = sqlite3_step(handle_);
  if (isLimited) deadline = QDeadlineTimer(QDeadlineTimer::Forever);
  spentMs_ += clock.elapsed();
  switch (result) {
    case SQLITE_ROW:
      return Step::Row;
    case SQLITE_DONE:
      return Step::Done;
    default:
      connection_.Fail();
      return Step::Failed;
  }
}

int Statement::ColumnCount() const {
  return sqlite3_column_count(handle_);
}

QString Statement::ColumnName(int column) const {
  return QString::fromUtf8(sqlite3_column_name(handle_, column));
}

bool Statement::IsLongBinary(int column) const {
  const char* type = sqlite3_column_decltype(handle_, column);
  return type != nullptr && std::string_view(type) == kLongBinaryType;
}

bool Statement::EndsWithNul(int column, int least) const {
  if (sqlite3_column_type(handle_, column) != SQLITE_TEXT) return false;
  const unsigned char* text = sqlite3_column_text(handle_, column);
  const int bytes = sqlite3_column_bytes(handle_, column);
  return bytes >= least && text[bytes - 1] == 0;
}

QVariant Statement::Value(int column) const {
  switch (sqlite3_column_type(handle_, column)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER: {
      const qint64 number = sqlite3_column_int64(handle_, column);
      const bool isShort = number >= std::numeric_limits<qint32>::min() &&
                           number <= std::numeric_limits<qint32>::max();
      return isShort ? QVariant(static_cast<qint32>(number)) : QVariant(number);
    }
    case SQLITE_FLOAT:
      return sqlite3_column_double(handle_, column);
    case SQLITE_BLOB:
      return QByteArray(static_cast<const char*>(sqlite3_column_blob(handle_, column)),
                        sqlite3_column_bytes(handle_, column));
    default:
      return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(handle_, column)),
                               sqlite3_column_bytes(handle_, column));
  }
}

}  // namespace vorn
