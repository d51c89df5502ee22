#pragma once

#include <QString>

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

}  // namespace vorn
