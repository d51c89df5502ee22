#pragma once

#include <QByteArray>
#include <QString>

#include "storage/engine.h"

namespace vorn {

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

/// Whether pages behind the first one bear the mark that this password gives them. Where it does,
/// a file that does not open is damaged at its begin, and the password is right.
bool PasswordFitsLaterPages(sqlite3* handle, const QString& password);

}  // namespace vorn
