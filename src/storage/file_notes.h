#pragma once

#include <QList>
#include <QString>

#include "storage/context.h"

namespace vorn {

/// What a profile remembers of one of its database files, so that a lost one is missed.
struct FileNote {
  QString path;          ///< as stored, with the "/current/" marker
  QString mark;          ///< see `FileMark`
  qint64 messages = -1;  ///< how many there were last; -1 where nobody has counted
  qint64 bytes = 0;      ///< the file's size when they were counted
  qint64 works = 0;      ///< how often messages were received or sent (see `CountWork`)
  qint64 changes = 0;    ///< how often the file was written to when messages were counted
  QString salt = {};     ///< see `FileSaltText`; empty in notes of earlier versions

  bool operator==(const FileNote&) const = default;
};

/// Random bytes at the head of every encrypted file as text. They are made with the file, stay
/// through password changes and can be read without a password (see `FileKey::Identity`). Empty
/// when there is no such file or it holds not even a page.
QString FileMark(const QString& path);

/// The bytes as text from which a file's key is derived: others after every change of its password.
/// Empty as above.
QString FileSaltText(const QString& path);

/// Whether there is a file with something in it: one of 0 bytes, or of less than its salt, is as
/// lost as a missing one.
bool HasContent(const QString& path);

/// The notes kept in a profile's object.
QList<FileNote> FileNotes(const Disk& profile);
void LetFileNotes(Disk& profile, const QList<FileNote>& notes);

/// Whether the logged-in profile has noted the file at a platform path.
bool IsNoted(const Context& context, const QString& path);

}  // namespace vorn
