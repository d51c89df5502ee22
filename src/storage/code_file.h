#pragma once

#include <QString>
#include <QStringList>

namespace vorn {

/// The file in a profile's folder that remembers its recovery code (`RecoveryCode`). It lies beside
/// the databases, so that a folder that is carried elsewhere opens there, and is for its owner
/// alone. What is written is on the disk before anything depends on it.
class CodeFile {
 public:
  explicit CodeFile(const QString& folder);

  /// The path of the file.
  const QString& Path() const { return path_; }
  /// The code; empty when there is none that can be read.
  QString Code() const;
  /// The code, or a new one, of several programs at once the same for all. Empty when it cannot be
  /// kept.
  QString CodeOrNew() const;
  /// Remembers that code from now on. What the file held otherwise stays under another name.
  bool Keep(const QString& code) const;
  /// The codes that other codes have taken the place of.
  QStringList Others() const;
  /// False when the file is still there.
  bool Forget() const;
  /// Gives the file another name: its code is one of the others from now on.
  bool SetAside() const;

 private:
  bool Write(const QString& code) const;

  QString path_;
};

}  // namespace vorn
