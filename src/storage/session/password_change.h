#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "storage/base/result.h"

namespace vorn {

class DataSession;

/// The steps of a password change, in their order; those of the first line and `Replace` once for
/// each file.
enum class PasswordStep { Copy, Rekey, VerifyCopy, Mark, Replace, Unmark, Verify };

/// Re-keys several database files: all of them or none, also when the process dies on the way.
///
/// Every file is first copied to a file beside it and the copy re-keyed. When all copies stand and
/// open with the new password alone, a marker file is written that names each file with the
/// fingerprint of its copy; that is the moment of decision. Then the copies take the places of the
/// files. `Finish` completes what a marker decided and removes what none did.
///
/// Both `Run` and `Finish` replace files: only whoever has the profile's lock alone may call them.
class PasswordChange {
 public:
  enum class Outcome {
    Changed,    ///< each file opens with the new password and not with the old one
    Unchanged,  ///< the old password holds
    Decided,    ///< the new one will hold once `Finish` succeeds; until then nothing is certain
  };

  /// How a change ended: what the files have now, and why it is not `Changed`.
  struct End {
    Outcome outcome = Outcome::Unchanged;
    StorageError reason = {};
  };

  /// `marker` is the path of the marker file, on the same volume as the files. Files that do not
  /// exist are left out.
  PasswordChange(DataSession& data, const QString& marker, const QStringList& files);

  End Run(const QString& oldPassword, const QString& newPassword);
  /// Whether some file has a key of an earlier kind under that password (see `FileKey`), as all
  /// have that are under none.
  bool AnyKeyIsOlder(const QString& password) const;
  /// Whether an earlier run left something behind, to be finished before the files are opened.
  bool IsUnfinished() const;
  /// Finishes or undoes what an earlier run left behind. When a decided change cannot be
  /// completed, it is tried again next time.
  Result<> Finish();

  /// Asked before every step with the step's file; on false the step fails. For tests.
  std::function<bool(PasswordStep, const QString&)> BeforeStep;

 private:
  struct Decision {
    QString file;
    QByteArray fingerprint;
  };

  Result<> Begin(PasswordStep step, const QString& file) const;
  Result<> MakeCopies(const QStringList& files, const QString& oldPassword,
                      const QString& newPassword);
  Result<> MakeCopy(const QString& file, const QString& oldPassword, const QString& newPassword);
  Result<> Verify(const QStringList& files, const QString& newPassword, const QString& oldPassword);
  Result<> OpensOnlyWith(const QString& file, const QString& newPassword,
                         const QString& oldPassword);
  Result<> WriteMarker(const QStringList& changed);
  Result<QList<Decision>> ReadMarker() const;
  Result<> PutInPlace(const Decision& decision);
  void RemoveCopies();

  DataSession& data_;
  QString marker_;
  QStringList files_;
};

}  // namespace vorn
