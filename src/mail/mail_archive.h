#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <functional>

namespace vorn {

/// The forms in which messages leave and enter the program.
enum class ArchiveFormat { Mbox, Maildir, Eml };

/// Reads the messages of a file or folder and hands each source to `take`, which returns false to
/// end the reading. A folder with "cur" and "new" is a Maildir; another folder is read for its .eml
/// files; a file that begins with "From " is an mbox (the "mboxrd" quoting is undone), any other
/// file is one message. Sources whose lines end with a bare LF get CR LF, unless `ArchiveWriter`
/// wrote them. False, with a sentence in `error`, when something could not be read; what came
/// before was handed over.
bool ReadArchive(const QString& path, const std::function<bool(const QByteArray&)>& take,
                 QString* error);

/// Writes messages to a new file (mbox) or folder (Maildir, Eml), unchanged.
class ArchiveWriter {
 public:
  ArchiveWriter(ArchiveFormat format, const QString& path) : format_(format), path_(path) {}

  /// False, with the reason in `Error`, when the target exists or cannot be made.
  bool Open();
  /// `name` is what a file is called after, such as the subject; `opened` whether it was read.
  bool Write(const QByteArray& source, const QString& name, bool opened);
  /// Brings everything to the disk. False when it cannot be.
  bool Close();
  const QString& Error() const { return error_; }

 private:
  bool WriteFile(const QString& path, const QByteArray& bytes);
  bool Fail(const QString& error);

  ArchiveFormat format_;
  QString path_;
  QFile mbox_;
  int count_ = 0;
  QString error_;
};

}  // namespace vorn
