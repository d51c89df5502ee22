#include "storage/schema.h"

#include "storage/connection.h"

namespace vorn {
namespace {

QByteArray TypeName(FieldType type) {
  switch (type) {
    case FieldType::Integer:
      return "INTEGER";
    case FieldType::DateTime:
      return "DATETIME";
    case FieldType::LongBinary:
      return QByteArray(kLongBinaryType.data(), static_cast<qsizetype>(kLongBinaryType.size()));
    default:
      return "TEXT";
  }
}

bool HasColumn(Connection& connection, const QByteArray& table, const QString& column,
               bool* tableExists) {
  const auto statement = connection.Prepare("PRAGMA table_info(" + table + ")");
  *tableExists = false;
  while (statement != nullptr && statement->Next() == Statement::Step::Row) {
    *tableExists = true;
    if (statement->Value(1).toString().compare(column, Qt::CaseInsensitive) == 0) return true;
  }
  return false;
}

bool HasTable(Connection& connection, const QByteArray& table) {
  return connection
             .Scalar("SELECT COUNT(0) FROM sqlite_master WHERE type = 'table' AND name = ?",
                     {QString::fromUtf8(table)})
             .toInt() > 0;
}

// Long binary data lives and dies with the row that refers to it.
bool CreateLongBinary(Connection& connection, const QByteArray& table, const QByteArray& column) {
  const QByteArray drop = "BEGIN DELETE FROM long_binary WHERE ID = OLD." + column + "; END";
  const QByteArray name = table + "_" + column;
  return connection.Run(
             "CREATE TABLE IF NOT EXISTS long_binary (ID INTEGER PRIMARY KEY, DATA BLOB)") &&
         connection.Run("CREATE TRIGGER IF NOT EXISTS " + name + "_deleted AFTER DELETE ON " +
                        table + " " + drop) &&
         connection.Run("CREATE TRIGGER IF NOT EXISTS " + name + "_replaced AFTER UPDATE OF " +
                        column + " ON " + table + " WHEN OLD." + column + " IS NOT NEW." + column +
                        " " + drop);
}

}  // namespace

bool CreateColumn(Connection& connection, const QString& tableName, const QString& columnName,
                  FieldType type, bool indexed) {
  const QByteArray table = tableName.toUtf8();
  const QByteArray column = columnName.toUtf8();
  bool tableExists = false;
  if (!HasColumn(connection, table, columnName, &tableExists)) {
    const QByteArray definition = column + " " + TypeName(type);
    const bool added = tableExists
                           ? connection.Run("ALTER TABLE " + table + " ADD COLUMN " + definition)
                           : connection.Run("CREATE TABLE " + table + " (" + definition + ")");
    if (!added) return false;
  }
  if (type == FieldType::LongBinary && !CreateLongBinary(connection, table, column)) return false;
  return !indexed || connection.Run("CREATE INDEX IF NOT EXISTS " + table + "_" + column + " ON " +
                                    table + " (" + column + ")");
}

bool CompleteSchema(Connection& connection) {
  if (HasTable(connection, "mail") &&
      !(connection.Run("CREATE INDEX IF NOT EXISTS mail_FIELD_ID ON mail (FIELD_ID)") &&
        connection.Run("CREATE INDEX IF NOT EXISTS mail_STATUS ON mail (STATUS, "
                       "FIELD_TIMESTAMP)") &&
        // The few messages that are not yet opened, which every folder's count asks for.
        connection.Run("CREATE INDEX IF NOT EXISTS mail_UNREAD ON mail (STATUS, FIELD_FLAG) WHERE "
                       "CAST(SUBSTR(FIELD_FLAG, 3, 1) AS INTEGER) = 1"))) {
    return false;
  }
  if (!connection.Run("PRAGMA application_id = " + QByteArray::number(kApplicationId)) ||
      !connection.Run("PRAGMA user_version = " + QByteArray::number(kSchemaVersion))) {
    return false;
  }
  connection.NoteSchemaVersion(kSchemaVersion);
  return true;
}

bool MigrateSchema(Connection& connection) {
  // A file without a version has no tables yet.
  const int version = connection.SchemaVersion();
  if (version == 0 || version >= kSchemaVersion) return true;
  // From 1 to 2: an index more.
  if (!connection.Begin()) return false;
  if (CompleteSchema(connection) && connection.Commit()) return true;
  connection.Rollback();
  return false;
}

}  // namespace vorn
