#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QString>
#include <functional>

#include "storage/base/result.h"

namespace vorn {

/// The forms in which messages leave and enter the program.
enum class ArchiveFormat { Mbox, Maildir, Eml };

/// Reads the messages of a file or folder and hands each source to `take`, which returns false to
/// end the reading. A folder with "cur" and "new" is a Maildir; another folder is read for its .eml
/// and .mbox files; so are those in it. A file that begins with "From " is an mbox (see
/// `ReadMbox`), any other file is one message. Sources whose lines end with a bare LF get CR LF,
/// unless `ArchiveWriter` wrote them. Fails when something could not be read or is no message;
/// everything else was handed over. Gives a sentence about files in a folder that were passed over,
/// or an empty one.
Result<QString> ReadArchive(const QString& path,
                            const std::function<bool(const QByteArray&)>& take);

/// How many bytes of messages there are to read in it, about.
qint64 ArchiveBytes(const QString& path);

/// What an archive tells of a message beside its source.
struct ArchiveNote {
  QString name;         ///< what a file is called after, such as the subject
  bool opened = false;  ///< whether it was read
  QDateTime time = {};  ///< when it came or was written
};

/// Writes messages to a file (mbox) or folder (Maildir, Eml), unchanged. They are gathered under
/// another name beside it and get theirs in `Close`: a writer that ends before leaves nothing under
/// that name, and what a killed one left is removed by the next one.
class ArchiveWriter {
 public:
  /// With `overwrite` a target that exists is replaced. A folder is replaced only when there is
  /// nothing in it but messages that this program wrote.
  ArchiveWriter(ArchiveFormat format, const QString& path, bool overwrite = false);
  ~ArchiveWriter();
  ArchiveWriter(const ArchiveWriter&) = delete;
  ArchiveWriter& operator=(const ArchiveWriter&) = delete;

  /// Fails when the target exists, is being written by another program or cannot be made.
  Result<> Open();
  Result<> Write(const QByteArray& source, const ArchiveNote& note);
  /// Puts everything in its place. When it cannot be, what was there is as it was.
  Result<> Close();

 private:
  Result<> MayReplace() const;
  void RemoveLeftOvers();
  [[nodiscard]] bool MakeParts();
  [[nodiscard]] bool Replace();
  void RemoveParts();

  ArchiveFormat format_;
  QString path_;
  QString parts_;  // where the messages are gathered
  bool overwrite_;
  bool isOpen_ = false;
  QLockFile lock_;
  QFile mbox_;
  int count_ = 0;
};

}  // namespace vorn
