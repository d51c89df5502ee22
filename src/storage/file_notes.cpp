#include "storage/file_notes.h"

#include <QFileInfo>
#include <algorithm>

#include "storage/file_key.h"
#include "storage/raw_pages.h"

namespace vorn {
namespace {

constexpr qint64 kPageBytes = 4096;
// Earlier versions noted all of the salt, which was the engine's.
constexpr qsizetype kMarkCharacters = 8;
const QString kNotes = QStringLiteral("FileNotes");
const QString kLineEnd = QStringLiteral("\r\n");

}  // namespace

QString FileMark(const QString& path) {
  if (QFileInfo(path).size() < kPageBytes) return {};
  const QByteArray salt = FileStart(path, FileKey::kSaltBytes);
  return salt.isEmpty() ? QString() : QString::fromLatin1(FileKey::Identity(salt).toHex());
}

bool HasContent(const QString& path) {
  return QFileInfo(path).size() > 0;
}

// One a line: mark, messages, bytes and works with "/" between them, path.
QList<FileNote> FileNotes(const Disk& profile) {
  QList<FileNote> notes;
  for (const QString& line : profile.Text(kNotes).split(kLineEnd, Qt::SkipEmptyParts)) {
    const QString numbers = line.section(u' ', 2, 2);
    notes.append({line.section(u' ', 3), line.section(u' ', 0, 0).left(kMarkCharacters),
                  line.section(u' ', 1, 1).toLongLong(), numbers.section(u'/', 0, 0).toLongLong(),
                  numbers.section(u'/', 1, 1).toLongLong()});
  }
  return notes;
}

void LetFileNotes(Disk& profile, const QList<FileNote>& notes) {
  QStringList lines;
  for (const FileNote& note : notes) {
    lines.append(QStringLiteral("%1 %2 %3/%4 ")
                     .arg(note.mark)
                     .arg(note.messages)
                     .arg(note.bytes)
                     .arg(note.works) +
                 note.path);
  }
  profile.Let(kNotes, lines.join(kLineEnd));
}

bool IsNoted(const Context& context, const QString& path) {
  const QList<FileNote> notes = FileNotes(*context.Session);
  return std::any_of(notes.begin(), notes.end(), [&](const FileNote& note) {
    return PlatformPath(context, note.path) == path;
  });
}

}  // namespace vorn
