#include "storage/engine/schema.h"

#include "storage/engine/connection.h"

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

enum class Stands { NoTable, NoColumn, Column };

Stands LookFor(Connection& connection, const QByteArray& table, const QString& column) {
  const auto statement = connection.Prepare("PRAGMA table_info(" + table + ")");
  Stands stands = Stands::NoTable;
  while (statement != nullptr && statement->Next() == Statement::Step::Row) {
    stands = Stands::NoColumn;
    if (statement->Value(1).toString().compare(column, Qt::CaseInsensitive) == 0) {
      return Stands::Column;
    }
  }
  return stands;
}

bool HasTable(Connection& connection, const QByteArray& table) {
  return connection
             .Scalar("SELECT COUNT(0) FROM sqlite_master WHERE type = 'table' AND name = ?",
                     {QString::fromUtf8(table)})
             .toInt() > 0;
}

// The highest number that an entry of long binary data or the row that refers to it ever had. It is
// given once: where the newest entries cannot be seen, since a page is as it was before them, what
// refers to one of them would find another one.
bool CreateLastLongBinary(Connection& connection, const QByteArray& table) {
  return connection.Run(
             "CREATE TABLE IF NOT EXISTS long_binary_last (ONE INTEGER PRIMARY KEY, ID INTEGER)") &&
         connection.Run(
             "INSERT OR IGNORE INTO long_binary_last SELECT 1, COALESCE(MAX(rowid), 0) FROM " +
             table);
}

// Long binary data lives and dies with the row that refers to it.
bool CreateLongBinary(Connection& connection, const QByteArray& table, const QByteArray& column) {
  const QByteArray drop = "BEGIN DELETE FROM long_binary WHERE ID = OLD." + column + "; END";
  const QByteArray name = table + "_" + column;
  if (!CreateLastLongBinary(connection, table)) return false;
  // The digest stands first, so that it is read without the data.
  return connection.Run(
             "CREATE TABLE IF NOT EXISTS long_binary (ID INTEGER PRIMARY KEY, DIGEST BLOB, DATA "
             "BLOB)") &&
         connection.Run("CREATE TRIGGER IF NOT EXISTS " + name + "_deleted AFTER DELETE ON " +
                        table + " " + drop) &&
         connection.Run("CREATE TRIGGER IF NOT EXISTS " + name + "_replaced AFTER UPDATE OF " +
                        column + " ON " + table + " WHEN OLD." + column + " IS NOT NEW." + column +
                        " " + drop);
}

bool AddDigests(Connection& connection) {
  return LookFor(connection, "long_binary", QStringLiteral("DIGEST")) != Stands::NoColumn ||
         connection.Run("ALTER TABLE long_binary ADD COLUMN DIGEST BLOB");
}

// Earlier versions could store a message twice; both rows stay, under identifiers of their own.
bool TellDoublesApart(Connection& connection) {
  return connection.Run(
      "UPDATE mail SET FIELD_ID = FIELD_ID || '#' || SERIALID WHERE rowid NOT IN (SELECT "
      "MIN(rowid) FROM mail GROUP BY FIELD_ID)");
}

bool CreateMailIndexes(Connection& connection) {
  return connection.Run("CREATE UNIQUE INDEX IF NOT EXISTS mail_FIELD_ID ON mail (FIELD_ID)") &&
         connection.Run(
             // The identifier tells without the row whether it has been filed. Files of earlier
             // versions have the index without it, which costs them time alone.
             "CREATE INDEX IF NOT EXISTS mail_STATUS ON mail (STATUS, FIELD_TIMESTAMP, "
             "SERIALID)") &&
         // The few messages that are not yet opened, which every folder's count asks for.
         connection.Run(
             "CREATE INDEX IF NOT EXISTS mail_UNREAD ON mail (STATUS, FIELD_FLAG) WHERE " +
             QByteArray(kUnopenedCondition.data()));
}

// A message that is being handed over to a server, or may have been, keeps its source and its state
// whoever writes to the file. One of which nobody knows whether it arrived may be thrown away and
// taken back, and deleted.
bool CreateSendAttempts(Connection& connection) {
  const QByteArray doubtful = QByteArray::number(kAttemptDoubtful);
  const QByteArray refuse =
      " BEGIN SELECT RAISE(ABORT, '" + QByteArray(kInTransferWords.data()) + "'); END";
  return connection.Run(
             "CREATE TABLE IF NOT EXISTS send_attempt (SERIALID TEXT PRIMARY KEY, STATE INTEGER, "
             "STARTED DATETIME, SERVER TEXT, REPLY TEXT)") &&
         connection.Run(
             "CREATE TRIGGER IF NOT EXISTS send_attempt_keeps_row BEFORE UPDATE OF STATUS, MAIL ON "
             "mail WHEN EXISTS (SELECT 1 FROM send_attempt WHERE SERIALID = OLD.SERIALID AND NOT "
             "(STATE = " +
             doubtful + " AND NEW.MAIL IS OLD.MAIL AND ABS(NEW.STATUS) = ABS(OLD.STATUS)))" +
             refuse) &&
         connection.Run(
             "CREATE TRIGGER IF NOT EXISTS send_attempt_keeps_message BEFORE DELETE ON mail WHEN "
             "EXISTS (SELECT 1 FROM send_attempt WHERE SERIALID = OLD.SERIALID AND STATE <> " +
             doubtful + ")" + refuse) &&
         connection.Run(
             "CREATE TRIGGER IF NOT EXISTS send_attempt_goes AFTER DELETE ON mail BEGIN DELETE "
             "FROM send_attempt WHERE SERIALID = OLD.SERIALID; END");
}

// What a server has refused for good, with its words, until the message is sent, waits anew or
// goes; while it is mended, what was wrong with it is of use.
bool CreateSendRefusals(Connection& connection) {
  const QByteArray forget = " BEGIN DELETE FROM send_refusal WHERE SERIALID = OLD.SERIALID; END";
  return connection.Run(
             "CREATE TABLE IF NOT EXISTS send_refusal (SERIALID TEXT PRIMARY KEY, ROUTE TEXT, "
             "TRIED DATETIME, REPLY TEXT)") &&
         connection.Run(
             "CREATE TRIGGER IF NOT EXISTS send_refusal_is_past AFTER UPDATE OF STATUS, MAIL ON "
             "mail WHEN ABS(NEW.STATUS) <> " +
             QByteArray::number(kStatusEdit) +
             " AND (NEW.MAIL IS NOT OLD.MAIL OR ABS(NEW.STATUS) <> ABS(OLD.STATUS))" + forget) &&
         connection.Run("CREATE TRIGGER IF NOT EXISTS send_refusal_goes AFTER DELETE ON mail" +
                        forget);
}

// What was received and erased for good: the server may still have it, also under another name.
// Imported messages come from no server.
bool CreateErased(Connection& connection) {
  return connection.Run(
             "CREATE TABLE IF NOT EXISTS erased (FIELD_ID TEXT PRIMARY KEY, DIGEST BLOB) WITHOUT "
             "ROWID") &&
         connection.Run(
             "CREATE TRIGGER IF NOT EXISTS erased_noted BEFORE DELETE ON mail WHEN "
             "ABS(OLD.STATUS) = " +
             QByteArray::number(kStatusReceived) +
             " AND OLD.FIELD_ID NOT LIKE 'import/%' BEGIN INSERT OR REPLACE INTO "
             "erased VALUES (OLD.FIELD_ID, (SELECT DIGEST FROM long_binary WHERE ID = OLD.MAIL)); "
             "END");
}

// Which of the received messages their servers still have.
bool CreateOnServer(Connection& connection) {
  return connection.Run(
      "CREATE TABLE IF NOT EXISTS on_server (MAILBOX TEXT, FIELD_ID TEXT, SIZE INTEGER, STATE "
      "INTEGER, PRIMARY KEY (MAILBOX, FIELD_ID)) WITHOUT ROWID");
}

// What messages were answered with that did not fit their sizes.
bool CreateDoubtfulAnswers(Connection& connection) {
  return connection.Run(
      "CREATE TABLE IF NOT EXISTS doubtful_answer (MAILBOX TEXT, FIELD_ID TEXT, SIZE INTEGER, "
      "STORED_AS TEXT, PRIMARY KEY (MAILBOX, FIELD_ID)) WITHOUT ROWID");
}

// What tells a received message under whatever name it comes. What was stored by an earlier version
// has none. An entry without its message is no harm: what it leads to is compared.
bool CreateReceivedIdentity(Connection& connection) {
  return connection.Run(
      "CREATE TABLE IF NOT EXISTS received_identity (IDENTITY INTEGER PRIMARY KEY, SERIALID TEXT)");
}

// What the rules stopped and left on its server, of which the user has been told.
bool CreateToldStops(Connection& connection) {
  return connection.Run("CREATE TABLE IF NOT EXISTS told_stop (DIGEST INTEGER PRIMARY KEY)");
}

// From 2 to 3 sources got digests and identifiers became unique.
bool PrepareMessages(Connection& connection) {
  return AddDigests(connection) && TellDoublesApart(connection) &&
         connection.Run("DROP INDEX IF EXISTS mail_FIELD_ID");
}

// From 4 to 5 what was erased got its digest.
bool PrepareErased(Connection& connection) {
  return (LookFor(connection, "erased", QStringLiteral("DIGEST")) != Stands::NoColumn ||
          connection.Run("ALTER TABLE erased ADD COLUMN DIGEST BLOB")) &&
         connection.Run("DROP TRIGGER IF EXISTS erased_noted");
}

// From 5 to 6 what the servers have got a state in the place of a count of deletions, where -1 and
// -2 stood for kept and absent, and in the row of the mailbox itself 1 and 2 for names given anew
// and moved.
bool PrepareOnServer(Connection& connection) {
  if (LookFor(connection, "on_server", QStringLiteral("DELETIONS")) != Stands::Column) {
    // One build noted the names alone.
    return LookFor(connection, "on_server", QStringLiteral("STATE")) != Stands::NoColumn ||
           connection.Run("DROP TABLE on_server");
  }
  return connection.Run("ALTER TABLE on_server RENAME TO former_on_server") &&
         CreateOnServer(connection) &&
         connection.Run(
             "INSERT INTO on_server SELECT MAILBOX, FIELD_ID, SIZE, CASE WHEN FIELD_ID = '' THEN "
             "CASE DELETIONS WHEN 2 THEN 3 ELSE 0 END WHEN DELETIONS = -2 THEN 2 WHEN DELETIONS > "
             "0 THEN 1 ELSE 0 END FROM former_on_server") &&
         connection.Run("DROP TABLE former_on_server");
}

// From 10 to 11 refusals got the time and the server's words, from 11 to 12 they outlive editing.
bool PrepareRefusals(Connection& connection) {
  return (LookFor(connection, "send_refusal", QStringLiteral("REPLY")) != Stands::NoColumn ||
          (connection.Run("ALTER TABLE send_refusal ADD COLUMN TRIED DATETIME") &&
           connection.Run("ALTER TABLE send_refusal ADD COLUMN REPLY TEXT"))) &&
         connection.Run("DROP TRIGGER IF EXISTS send_refusal_is_past");
}

}  // namespace

bool CreateLateDigests(Connection& connection) {
  return connection.Run(
             "CREATE TABLE IF NOT EXISTS late_digest (ID INTEGER PRIMARY KEY, DIGEST BLOB)") &&
         connection.Run(
             "CREATE TRIGGER IF NOT EXISTS late_digest_goes AFTER DELETE ON long_binary BEGIN "
             "DELETE FROM late_digest WHERE ID = OLD.ID; END");
}

bool CreateColumn(Connection& connection, const QString& tableName, const QString& columnName,
                  FieldType type, bool indexed) {
  const QByteArray table = tableName.toUtf8();
  const QByteArray column = columnName.toUtf8();
  const Stands stands = LookFor(connection, table, columnName);
  if (stands != Stands::Column) {
    const QByteArray definition = column + " " + TypeName(type);
    const bool added = stands == Stands::NoColumn
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
      !(CreateMailIndexes(connection) && CreateSendAttempts(connection) &&
        CreateSendRefusals(connection) && CreateLateDigests(connection) &&
        CreateErased(connection) && CreateOnServer(connection) &&
        CreateDoubtfulAnswers(connection) && CreateReceivedIdentity(connection) &&
        CreateToldStops(connection) && CreateLastLongBinary(connection, "mail"))) {
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
  // From 1 to 2: an index more. From 2 to 3: digests, unique identifiers, and what is known of
  // messages being sent. From 3 to 4: what was erased. From 4 to 6: what the servers have.
  // From 6 to 7: what tells received messages. From 7 to 8: the highest number of long binary data.
  // From 8 to 9: answers that did not fit. From 9 to 10: what was refused; the last builds with 9
  // had made it in new files. From 10 to 11: what was said of refusals, and of stopped messages.
  // From 11 to 12: refusals of what is being mended.
  if (!connection.Begin()) return false;
  const bool prepared =
      !HasTable(connection, "mail") ||
      ((version >= 3 || PrepareMessages(connection)) && PrepareErased(connection) &&
       PrepareOnServer(connection) && PrepareRefusals(connection));
  if (prepared && CompleteSchema(connection) && connection.Commit()) return true;
  connection.Rollback();
  return false;
}

}  // namespace vorn
