#pragma once

#include <QString>

#include "storage/base/result.h"

namespace vorn {

class Connection;

/// Copies a database file that no program has open, with all that was committed to it.
Result<> CopyDatabaseFile(const QString& path, const QString& password, const QString& target);

/// Gives an open file, which nobody else has open, the key of another password. On failure the old
/// one stays valid.
Result<> ChangeKey(Connection& connection, const QString& newPassword);

}  // namespace vorn
