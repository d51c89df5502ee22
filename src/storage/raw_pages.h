#pragma once

#include <QByteArray>
#include <QString>

#include "storage/engine.h"

namespace vorn {

/// The random bytes at a file's begin, from which its key is derived; empty when they cannot be
/// read. Read through the engine's own descriptor: closing another one of the same file would take
/// this process's locks on it away.
QByteArray FileSalt(sqlite3* handle);

/// Whether pages behind the first one bear the mark that this password gives them. Where it does,
/// a file that does not open is damaged at its begin, and the password is right.
bool PasswordFitsLaterPages(sqlite3* handle, const QString& password);

}  // namespace vorn
