#pragma once

// The one place that includes the database engine.
#define SQLITE_HAS_CODEC
#include <sqlcipher/sqlite3.h>

#include <QByteArray>
#include <QString>

#include "storage/storage_error.h"

namespace vorn {

/// The engine's current error as a kind and a sentence for the user.
StorageError EngineError(sqlite3* handle);

/// Adds the dialect's functions: LIKE, NOW, DATEDIFF and LONG_BINARY.
void RegisterDialectFunctions(sqlite3* handle);
/// Functions of the engine in a form that keeps to bounds of time and memory.
void RegisterBoundedFunctions(sqlite3* handle);

}  // namespace vorn
