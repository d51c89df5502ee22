#pragma once

#include <QString>

#include "storage/base/result.h"
#include "storage/files/file_lock.h"

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

  /// Shares the profile, waiting a while for one that has it alone.
  Result<> Share();
  /// Takes the profile alone, waiting a moment for the others. When it fails, what was shared
  /// before is shared again.
  Result<> TakeAlone();
  /// Back from alone to shared.
  Result<> ShareAgain();
  void Release();

  const QString& Folder() const { return folder_; }

 private:
  QString folder_;
  FileLock users_;
  FileLock gate_;
};

}  // namespace vorn
