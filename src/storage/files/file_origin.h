#pragma once

#include <QString>

namespace vorn {

/// Marks a file as one that came from elsewhere, where the platform keeps such marks, so that other
/// programs can ask before they trust it. `address` tells from where (a URL). Best effort: not
/// every file system can.
void MarkForeign(const QString& path, const QString& address);

}  // namespace vorn
