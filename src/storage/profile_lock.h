#pragma once

#include <QString>

#include "storage/file_lock.h"
#include "storage/storage_error.h"

namespace vorn {

/// The lock of a profile: shared by everything that has logged in to it, taken alone by whatever
/// replaces its files. The death of a holder releases it.
///
/// Whoever wants it alone first takes a second lock, the gate, so that nobody else can have
/// replaced the files in the moment in which the kind of the first one changes.
class ProfileLock {
 public:
  /// `folder` holds the profile's database and gets the lock's files.
  explicit ProfileLock(const QString& folder);

  /// Shares the profile, waiting a while for one that has it alone. On false `Error` says who.
  bool Share();
  /// Takes the profile alone, waiting a moment for the others. On false `Error` says why, and what
  /// was shared before is shared again.
  bool TakeAlone();
  /// Back from alone to shared.
  bool ShareAgain();
  void Release();

  const QString& Folder() const { return folder_; }
  const StorageError& Error() const { return error_; }

 private:
  bool Fail(FileLock::Result result, const FileLock& lock, const QString& inUse);

  QString folder_;
  FileLock users_;
  FileLock gate_;
  StorageError error_;
};

}  // namespace vorn
