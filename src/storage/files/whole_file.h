#pragma once

#include <QByteArray>
#include <QString>

class QSaveFile;

namespace vorn {

// Files that appear whole or not at all, in place of what was there.

/// Puts a file that has been written into its place. False, and all is as it was, when not every
/// byte of it has reached the disk: `QSaveFile::commit` alone does not notice that for the last
/// ones it held back (seen with Qt 6.4).
[[nodiscard]] bool FinishFile(QSaveFile& file);

/// Writes a file. False, and all is as it was, when it cannot be.
[[nodiscard]] bool WriteWhole(const QString& path, const QByteArray& bytes);

}  // namespace vorn
