#pragma once

#include <QByteArray>
#include <QString>

#include "storage/engine/engine.h"

namespace vorn {

/// The bytes of a page of a file.
constexpr qint64 kPageBytes = 4096;

/// The engine's own access to an open file; null when there is none. Files that a connection may
/// have open are read through it alone: closing another descriptor of the same file takes all of
/// this process's locks on it away (POSIX `fcntl`), and another program, which then finds itself
/// alone, deletes the log that this one goes on writing to.
sqlite3_file* EngineFile(sqlite3* handle);

/// The first bytes of a file, read by the engine; empty when there are not so many.
QByteArray FileStart(const QString& path, qsizetype length);

/// The random bytes at a file's begin, from which its key is derived; empty when they cannot be
/// read.
QByteArray FileSalt(sqlite3* handle);

/// The marks that a password gives the pages of an open file (HMAC-SHA-1 over the encrypted page
/// and its number). Deriving their key takes about as long as opening a file.
class PageMarks {
 public:
  PageMarks(sqlite3* handle, const QString& password);

  /// Whether an encrypted page, not the first, bears its mark.
  bool IsMarked(quint32 number, const QByteArray& page) const;
  /// Whether one of the pages behind the first one does: the password is right then, and a file
  /// that does not open all the same is damaged at its begin.
  bool FitFile() const;

 private:
  sqlite3* handle_;
  QByteArray key_;  // empty when there is no file to derive it from
};

}  // namespace vorn
