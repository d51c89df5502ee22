#include "objects/profile/file_age.h"

#include <algorithm>

#include "objects/save_object.h"
#include "storage/databases.h"
#include "storage/file_notes.h"
#include "storage/session/database_sync.h"
#include "storage/session/file_counts.h"
#include "storage/session/session_result.h"

namespace vorn {
namespace {

// Whether the open file is older than its note. Messages alone tell nothing: they are deleted, too.
bool IsOlder(DataSession& data, const FileNote& note) {
  FileCounts counts(data);
  if (const Result<qint64> works = counts.Works(); works && *works < note.works) return true;
  if (note.changes <= 0) return false;
  const Result<qint64> changes = counts.Changes();
  if (!changes || *changes >= note.changes) return false;
  const Result<qint64> messages = counts.Messages();
  return messages && *messages < note.messages;
}

// At least `least`; the older copy is told from the file that may come back in its place. Gives
// the new count.
Result<qint64> WriteCount(Context& context, const QString& file, qint64 least, bool isOlder) {
  const OpenedDatabase opened(context, DatabaseKind::MailByPath, file);
  if (!opened) return opened.Error();
  DataSession& data = context.Data;
  if (!data.Begin()) return ReasonOf(data);
  FileCounts counts(data);
  const Result<qint64> before = counts.Works();
  const qint64 next = std::max(before.ValueOr(0) + 1, least);
  Result<> written = before ? counts.SetWorks(next) : before.Error();
  if (written && isOlder) written = counts.MarkOlderCopy();
  if (written) written = ResultOf(data, data.Commit());
  // On the disk before it is remembered: a machine that stops in between must not leave a file that
  // looks older.
  if (written) written = SyncDatabase(data, PlatformPath(context, file));
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
  return opened ? FileCounts(context.Data).Changes().ValueOr(0) : 0;
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
  return FileCounts(context.Data).IsOlderCopy().ValueOr(true);
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
