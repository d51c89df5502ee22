#include "objects/file_age.h"

#include <algorithm>
#include <optional>

#include "objects/save_object.h"
#include "storage/databases.h"
#include "storage/file_notes.h"
#include "storage/session_result.h"

namespace vorn {
namespace {

const QString kWorks = QStringLiteral("work_count");
const QString kChanges = QStringLiteral("change_mark");
const QString kOlder = QStringLiteral("older_copy");  // in a file that was found to be one

std::optional<qint64> Ask(DataSession& data, const QString& select) {
  if (!data.OpenRecordset(select, CursorKind::ForwardOnly) || data.Recordset()->Failed()) {
    return std::nullopt;
  }
  return data.Recordset()->Fields(u"N").toLongLong();
}

// Of the file that is open; nothing when it cannot be read. A file that never counted has no table.
std::optional<qint64> ReadCount(DataSession& data, const QString& table) {
  const auto tables = Ask(
      data, QStringLiteral("SELECT COUNT(0) AS N FROM sqlite_master WHERE NAME = '%1'").arg(table));
  if (!tables || *tables == 0) return tables;
  return Ask(data, QStringLiteral("SELECT MAX(NUMBER) AS N FROM ") + table);
}

// Whether the open file is older than its note. Messages alone tell nothing: they are deleted, too.
bool IsOlder(DataSession& data, const FileNote& note) {
  const std::optional<qint64> works = ReadCount(data, kWorks);
  if (works && *works < note.works) return true;
  const std::optional<qint64> changes = note.changes > 0 ? ReadCount(data, kChanges) : std::nullopt;
  if (!changes || *changes >= note.changes) return false;
  const auto messages = Ask(data, QStringLiteral("SELECT COUNT(0) AS N FROM mail"));
  return messages && *messages < note.messages;
}

// At least `least`; the older copy is told from the file that may come back in its place. Gives
// the new count.
Result<qint64> WriteCount(Context& context, const QString& file, qint64 least, bool isOlder) {
  const OpenedDatabase opened(context, DatabaseKind::MailByPath, file);
  if (!opened) return opened.Error();
  DataSession& data = context.Data;
  if (!data.Begin()) return ReasonOf(data);
  const std::optional<qint64> before = ReadCount(data, kWorks);
  const qint64 next = std::max(before.value_or(0) + 1, least);
  const Result<> written = ResultOf(
      data, before &&
                data.Execute(QStringLiteral("CREATE TABLE IF NOT EXISTS work_count (ID INTEGER "
                                            "PRIMARY KEY, NUMBER INTEGER)")) &&
                data.Execute(QStringLiteral("DELETE FROM work_count")) &&
                data.Execute(
                    QStringLiteral("INSERT INTO work_count (ID, NUMBER) VALUES(1,%1)").arg(next)) &&
                (!isOlder || data.Execute(QStringLiteral("CREATE TABLE IF NOT EXISTS ") + kOlder +
                                          QStringLiteral(" (ID INTEGER PRIMARY KEY)"))) &&
                data.Commit() &&
                // On the disk before it is remembered: a machine that stops in between must not
                // leave a file that looks older.
                data.MakeDurable(PlatformPath(context, file)));
  if (written) return next;
  data.Rollback();
  return written.Error();
}

qint64 Remembered(const Context& context, const QString& file) {
  for (const FileNote& note : FileNotes(*context.Session)) {
    if (PlatformPath(context, note.path) == file) return note.works;
  }
  return 0;
}

}  // namespace

Result<> CountWork(Context& context) {
  const QString file = MailDatabasePath(context);
  const Result<qint64> count = WriteCount(context, file, Remembered(context, file), false);
  if (!count) return count.Error();
  QList<FileNote> notes = FileNotes(*context.Session);
  for (FileNote& note : notes) {
    if (PlatformPath(context, note.path) == file) note.works = *count;
  }
  LetFileNotes(*context.Session, notes);
  return SaveObject(context, DatabaseKind::Navigator, *context.Session);
}

qint64 ChangesOf(Context& context, const QString& file) {
  const OpenedDatabase opened(context, DatabaseKind::MailByPath, file);
  return opened ? ReadCount(context.Data, kChanges).value_or(0) : 0;
}

QStringList OlderFiles(Context& context) {
  QStringList older;
  for (const FileNote& note : FileNotes(*context.Session)) {
    const QString path = PlatformPath(context, note.path);
    if ((note.works == 0 && note.changes == 0) || note.mark != FileMark(path)) continue;
    const OpenedDatabase opened(context, DatabaseKind::MailByPath, note.path);
    if (opened && IsOlder(context.Data, note)) older.append(path);
  }
  return older;
}

bool WasOlder(Context& context, const QString& file) {
  const OpenedDatabase opened(context, DatabaseKind::MailByPath, file);
  if (!opened) return true;
  const auto tables =
      Ask(context.Data,
          QStringLiteral("SELECT COUNT(0) AS N FROM sqlite_master WHERE NAME = '%1'").arg(kOlder));
  return !tables || *tables > 0;
}

Result<> AcceptAge(Context& context, const QString& file) {
  QList<FileNote> notes = FileNotes(*context.Session);
  for (FileNote& note : notes) {
    if (PlatformPath(context, note.path) == file) note.bytes = note.changes = 0;  // counted anew
  }
  LetFileNotes(*context.Session, notes);
  const Result<qint64> count = WriteCount(context, file, Remembered(context, file), true);
  return count ? Result<>() : count.Error();
}

}  // namespace vorn
