#pragma once

#include <QString>
#include <QStringList>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// A profile's object, not stored yet: its database lies in the folder named by its serial
/// identifier; `mail` is the stored path of its mail database, which is all its history.
DiskPtr NewProfile(const SerialId& serialId, const QString& name, const QString& mail);

/// Makes a profile in the navigator database: its object, with the path of its profile database and
/// of one mail database in a folder of its own. The files themselves are made when they are first
/// opened.
Result<DiskPtr> CreateProfile(Context& context, const QString& name);

/// Makes a profile object the session bag, under its typed password, which is never saved.
void EnterProfile(Context& context, const DiskPtr& profile, const QString& password);

/// Makes the logged-in profile the default one, in memory and in the navigator database. When
/// the mark cannot be stored, the one in memory is right all the same.
Result<> MarkDefaultProfile(Context& context);

/// The platform paths of a profile's database files: its profile database, then every mail database
/// that it uses or has used.
QStringList ProfileFiles(const Context& context, const Disk& profile);

/// The forms of the names of profiles' folders in the data folder: the first profile's, and those
/// that are made in a window.
QStringList ProfileFolders();

}  // namespace vorn
