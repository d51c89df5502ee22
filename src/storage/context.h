#pragma once

#include <QString>

#include "storage/bags/disk.h"
#include "storage/files/profile_lock.h"
#include "storage/keys/secret_store.h"
#include "storage/session/data_session.h"

namespace vorn {

/// What is process-wide, made once in `main` and passed by reference. Start-up fills it.
struct Context {
  QString AppFolder;  ///< the folder that holds the navigator database, with its separator
  QString VersionText;
  bool DebugMode = false;
  QString NaviDatabasePath;
  QString SecurityKey;   ///< the navigator database's password
  QString ComputerName;  ///< at most 40 characters
  QString TempFolder;
  QString LayoutFolder;
  /// The session bag; after login the logged-in profile object itself, with "password" holding the
  /// typed password.
  DiskPtr Session = std::make_shared<Disk>();
  /// The logged-in profile's lock, shared from the login to the end.
  std::shared_ptr<ProfileLock> Lock;
  /// The loaded objects: profiles, the profile's objects, the settings "logo".
  DiskCollection Objects;
  DataSession Data;
  /// Where the desktop keeps secrets; null where there is no such place.
  std::shared_ptr<SecretStore> Secrets;
  /// What start-up has done that the user must know, as sentences.
  QStringList Notices;
};

/// `path` with every "/current/" replaced by the application folder. Database paths are stored with
/// that marker so that a data folder can move.
QString CurrentPath(const Context& context, const QString& path);

/// A stored path, "/current/" and backslashes, as a path of this platform.
QString PlatformPath(const Context& context, const QString& stored);

}  // namespace vorn
