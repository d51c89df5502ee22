#include "storage/file_notes.h"

#include <QFileInfo>
#include <algorithm>

#include "storage/bags/profile_bag.h"
#include "storage/engine/raw_pages.h"
#include "storage/keys/file_key.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// Earlier versions noted all of the salt, which was the engine's.
constexpr qsizetype kMarkCharacters = 8;

QByteArray Salt(const QString& path) {
  return QFileInfo(path).size() < kPageBytes ? QByteArray() : FileStart(path, FileKey::kSaltBytes);
}

}  // namespace

QString FileMark(const QString& path) {
  const QByteArray salt = Salt(path);
  return salt.isEmpty() ? QString() : QString::fromLatin1(FileKey::Identity(salt).toHex());
}

QString FileSaltText(const QString& path) {
  return QString::fromLatin1(Salt(path).toHex());
}

bool HasContent(const QString& path) {
  return QFileInfo(path).size() >= FileKey::kSaltBytes;
}

// One a line: mark, messages, the others with "/" between them, path.
QList<FileNote> FileNotes(const Disk& profile) {
  QList<FileNote> notes;
  for (const QString& line :
       ProfileBag(profile).NoteLines().split(kLineBreak, Qt::SkipEmptyParts)) {
    const QStringList others = line.section(u' ', 2, 2).split(u'/');
    notes.append({line.section(u' ', 3), line.section(u' ', 0, 0).left(kMarkCharacters),
                  line.section(u' ', 1, 1).toLongLong(), others.value(0).toLongLong(),
                  others.value(1).toLongLong(), others.value(2).toLongLong(), others.value(3)});
  }
  return notes;
}

void LetFileNotes(Disk& profile, const QList<FileNote>& notes) {
  QStringList lines;
  for (const FileNote& note : notes) {
    lines.append(QStringLiteral("%1 %2 %3/%4/%5/%6 ")
                     .arg(note.mark)
                     .arg(note.messages)
                     .arg(note.bytes)
                     .arg(note.works)
                     .arg(note.changes)
                     .arg(note.salt) +
                 note.path);
  }
  ProfileBag::SetNoteLines(profile, lines.join(kLineBreak));
}

bool IsNoted(const Context& context, const QString& path) {
  const QList<FileNote> notes = FileNotes(*context.Session);
  return std::any_of(notes.begin(), notes.end(), [&](const FileNote& note) {
    return PlatformPath(context, note.path) == path;
  });
}

}  // namespace vorn
