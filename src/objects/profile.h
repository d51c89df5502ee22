#pragma once

#include <QString>
#include <QStringList>

#include "storage/context.h"

namespace vorn {

/// Makes a profile in the navigator database: its object, with the path of its profile database and
/// of one mail database in a folder of its own. The files themselves are made when they are first
/// opened. Null when it cannot be saved.
DiskPtr CreateProfile(Context& context, const QString& name);

/// Makes a profile object the session bag, under its typed password, which is never saved.
void EnterProfile(Context& context, const DiskPtr& profile, const QString& password);

/// Makes the logged-in profile the default one, in memory and in the navigator database. False when
/// the mark could not be stored; the one in memory is right all the same.
bool MarkDefaultProfile(Context& context);

/// The platform paths of a profile's database files: its profile database, then every mail database
/// that it uses or has used.
QStringList ProfileFiles(const Context& context, const Disk& profile);

/// Changes the password of all files of a profile, all or none, and of the session when the profile
/// is the logged-in one. On false `error` is a sentence for the user and the old password holds.
bool ChangeProfilePassword(Context& context, const Disk& profile, const QString& oldPassword,
                           const QString& newPassword, QString* error);

/// Finishes or undoes a password change that was interrupted. Run before a login.
bool FinishPasswordChange(Context& context, const Disk& profile, QString* error);

}  // namespace vorn
