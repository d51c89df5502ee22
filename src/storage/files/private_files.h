#pragma once

#include <QFile>
#include <QString>

namespace vorn {

// Files and folders that are for their owner alone, whatever the user's file mode mask says. On
// systems that keep access lists the folder's own list decides.

/// Makes a folder and those above it that are missing. An existing one stays as it is.
/// False when there is none afterwards.
[[nodiscard]] bool MakePrivateFolder(const QString& folder);

/// Opens a file for writing; a new one is private from its first moment, an existing one becomes
/// so. False when it cannot be opened.
[[nodiscard]] bool OpenPrivate(QFile& file, QIODevice::OpenMode mode);

/// Makes an existing file or folder private. What a link leads to stays as it is. False when
/// its rights could not be changed.
[[nodiscard]] bool MakePrivate(const QString& path);

/// Makes a folder and everything in it private; nothing where the folder is a link.
void MakeTreePrivate(const QString& folder);

}  // namespace vorn
