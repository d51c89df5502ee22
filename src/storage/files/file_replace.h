#pragma once

#include <QString>

namespace vorn {

/// Puts the file `from` in the place of `to` in one step: whoever looks sees the old file or the
/// new one. False, with both files as they were, when that cannot be done.
[[nodiscard]] bool ReplaceFile(const QString& from, const QString& to);

enum class Placing { Done, Exists, Failed };

/// Gives the file `from` the name `to` in one step unless there is a file of that name already,
/// which is then left alone.
Placing PlaceNewFile(const QString& from, const QString& to);

/// Forces a file's content onto the disk. False when it may not be there.
[[nodiscard]] bool SyncFile(const QString& path);

/// Forces the names in a folder onto the disk, where the system keeps them apart from the files.
/// False when they may not be there.
[[nodiscard]] bool SyncFolder(const QString& folder);

}  // namespace vorn
