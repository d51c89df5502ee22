#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <vector>

class QIODevice;

namespace vorn {

/// A file within a ZIP archive.
struct ZipEntry {
  QString name;  ///< with its folders
  bool isEncrypted = false;
};

enum class ZipResult {
  Done,
  WrongPassword,  ///< or none for a file that needs one
  Damaged,        ///< or packed in a way that nobody here knows
  NotWritten      ///< the receiver refused
};

/// How many files of an archive are listed and unpacked at most.
inline constexpr size_t kMostZipFiles = 2000;

/// The files in an archive, folders left out; empty when it is none.
/// Names without a mark of their code are read in the code that fits them.
std::vector<ZipEntry> ListZip(const QByteArray& archive);

/// Whether something in an archive has a content and is yet no file by its mode, as programs that
/// do not know modes would take it for, or another archive stands in the same bytes.
bool HasHiddenFiles(const QByteArray& archive);

/// Unpacks the files that `target` gives a device for, which it is asked for each file in order; a
/// null device leaves the file out. Stops at the first fault. `done` is called when a file is
/// whole, and its answer of false stops as well.
ZipResult UnpackZip(const QByteArray& archive, const QString& password,
                    const std::function<QIODevice*(size_t index)>& target,
                    const std::function<bool()>& done);

}  // namespace vorn
