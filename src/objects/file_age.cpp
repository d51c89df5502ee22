#include "objects/file_age.h"

#include <optional>

#include "objects/save_object.h"
#include "storage/databases.h"
#include "storage/file_notes.h"

namespace vorn {
namespace {

// At least `least`. The new number, 0 when it could not be stored.
qint64 WriteCount(Context& context, const QString& file, qint64 least) {
  if (!OpenDatabase(context, DatabaseKind::MailByPath, file)) return 0;
  const qint64 number = context.Data.CountWork(least);
  context.Data.Close();
  return number;
}

qint64 Remembered(const Context& context, const QString& file) {
  for (const FileNote& note : FileNotes(*context.Session)) {
    if (PlatformPath(context, note.path) == file) return note.works;
  }
  return 0;
}

}  // namespace

bool CountWork(Context& context) {
  const QString file = MailDatabasePath(context);
  const qint64 count = WriteCount(context, file, Remembered(context, file));
  if (count == 0) return false;
  QList<FileNote> notes = FileNotes(*context.Session);
  for (FileNote& note : notes) {
    if (PlatformPath(context, note.path) == file) note.works = count;
  }
  LetFileNotes(*context.Session, notes);
  return SaveObject(context, DatabaseKind::Navigator, *context.Session);
}

QStringList OlderFiles(Context& context) {
  QStringList older;
  for (const FileNote& note : FileNotes(*context.Session)) {
    const QString path = PlatformPath(context, note.path);
    if (note.works == 0 || note.mark != FileMark(path)) continue;
    if (!OpenDatabase(context, DatabaseKind::MailByPath, note.path)) continue;
    const std::optional<qint64> count = context.Data.WorkNumber();
    context.Data.Close();
    if (count && *count < note.works) older.append(path);
  }
  return older;
}

bool AcceptAge(Context& context, const QString& file) {
  return WriteCount(context, file, Remembered(context, file)) > 0;
}

}  // namespace vorn
