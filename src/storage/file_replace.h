#pragma once

#include <QString>

namespace vorn {

/// Puts the file `from` in the place of `to` in one step: whoever looks sees the old file or the
/// new one. False when it could not be done; both files are then as they were.
bool ReplaceFile(const QString& from, const QString& to);

}  // namespace vorn
