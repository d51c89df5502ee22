#pragma once

#include <QString>
#include <QStringList>

#include "storage/storage_error.h"

namespace vorn {

class DataSession;

/// Re-keys several database files: all of them or none, also when the process dies on the way.
///
/// Every file is first copied to a file beside it and the copy re-keyed. When all copies stand, a
/// marker file is written; that is the moment of decision. Then the copies take the places of the
/// files. `FinishPasswordChange` completes what a marker decided and removes what none did.
class PasswordChange {
 public:
  /// `marker` is the path of the marker file, on the same volume as the files. Files that do not
  /// exist are left out.
  PasswordChange(DataSession& data, QString marker, QStringList files);

  /// False, with the reason in the session's `LastError` or in `Error`, when nothing was changed.
  bool Run(const QString& oldPassword, const QString& newPassword);
  /// Finishes or undoes what an earlier run left behind. False when a decided change could not be
  /// completed yet; it is tried again next time.
  bool Finish();
  const StorageError& Error() const { return error_; }

 private:
  bool MakeCopy(const QString& file, const QString& oldPassword, const QString& newPassword);
  bool WriteMarker();
  void RemoveCopies();
  bool MoveCopies();

  DataSession& data_;
  QString marker_;
  QStringList files_;
  StorageError error_;
};

}  // namespace vorn
