#pragma once

// The one place that includes the database engine.
#define SQLITE_HAS_CODEC
#include <sqlcipher/sqlite3.h>

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>
#include <string_view>

#include "storage/base/storage_error.h"

namespace vorn {

/// The engine's current error as a kind and a sentence for the user.
StorageError EngineError(sqlite3* handle);

/// The text of a function's argument, as long as the argument is there; empty for NULL.
inline std::string_view TextOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return text == nullptr ? std::string_view()
                         : std::string_view(text, static_cast<size_t>(sqlite3_value_bytes(value)));
}

/// Adds the dialect's functions: LIKE, NOW, DATEDIFF and LONG_BINARY. Those that may take long give
/// up at `deadline`, which the caller keeps and may change.
void RegisterDialectFunctions(sqlite3* handle, QDeadlineTimer* deadline);
/// Functions of the engine in a form that keeps to bounds of time and memory; likewise.
void RegisterBoundedFunctions(sqlite3* handle, QDeadlineTimer* deadline);
/// Ends a call of such a function, and its statement with it, when a text of that many bytes is not
/// short and the time is over.
bool GaveUp(sqlite3_context* context, size_t bytes);

}  // namespace vorn
