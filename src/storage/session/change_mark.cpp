#include "storage/session/change_mark.h"

#include "storage/engine/engine.h"
#include "storage/session/data_session.h"

namespace vorn {

// Another connection's counts start anew, so its address belongs to the mark.
QString OthersMark(const DataSession& data) {
  const auto& connection = data.OpenConnection();
  if (connection == nullptr) return {};
  return QStringLiteral("%1 %2")
      .arg(reinterpret_cast<quintptr>(connection.get()))
      .arg(connection->Scalar("PRAGMA data_version").toLongLong());
}

QString ChangeMark(const DataSession& data) {
  const auto& connection = data.OpenConnection();
  if (connection == nullptr) return {};
  return OthersMark(data) + u' ' + QString::number(sqlite3_total_changes(connection->Handle()));
}

}  // namespace vorn
