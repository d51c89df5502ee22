#pragma once

#include <QString>
#include <QStringList>

#include "storage/base/result.h"

namespace vorn {

class SecretStore;

/// The file in a profile's folder that remembers its recovery code (`RecoveryCode`): it names the
/// secret of the user's desktop that the code is, or holds the code itself where there is no place
/// for secrets. It lies beside the databases and is for its owner alone. What is written is on the
/// disk before anything depends on it.
class CodeFile {
 public:
  /// `secrets` may be null, and outlives the object.
  CodeFile(const QString& folder, SecretStore* secrets);

  /// The path of the file.
  const QString& Path() const { return path_; }
  /// Whether the file names a secret of the desktop's, which may not be there.
  bool NamesSecret() const;
  /// The code; empty when there is none that can be read.
  QString Code() const;
  /// The code, or a new one, of several programs at once the same for all. Fails when it cannot be
  /// kept.
  Result<QString> CodeOrNew() const;
  /// Remembers that code from now on. What the file held otherwise stays under another name. Fails
  /// when it cannot be kept, also where the desktop guarded the former one and cannot be asked.
  Result<> Keep(const QString& code) const;
  /// The codes that other codes have taken the place of.
  QStringList Others() const;
  /// Removes the file; fails when it is still there. A secret of the desktop's stays for copies of
  /// the folder, which name it as well.
  Result<> Forget() const;
  /// Gives the file another name: its code is one of the others from now on. Fails when it keeps
  /// its name.
  Result<> SetAside() const;

 private:
  QString CodeAt(const QString& path) const;
  Result<> WriteSecret(const QString& code) const;
  Result<> Replace(const QString& line) const;

  QString path_;
  SecretStore* secrets_;
};

}  // namespace vorn
