#pragma once

#include <QString>

#include "storage/base/storage_error.h"

namespace vorn {

/// Why the database file at `path` does not open, with its name, for the user who has several.
StorageError FileError(const QString& path, StorageError error);

}  // namespace vorn
