#pragma once

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// Makes what every profile has, where it is missing: the four standard folders, the settings
/// "logo", and for a new or older profile the bookmark list and the event log. An object that
/// exists keeps its values. Run at every login, after the profile's objects are loaded.
Result<> CreateStandardObjects(Context& context);

/// Whether the profile is of an earlier version and its user was never asked whether it is to look
/// like a new one.
bool HasFormerLook(Context& context);
/// Gives it the settings of a new profile's look, where nothing else was chosen, or keeps what it
/// has; in either case its user has been asked.
Result<> SettleLook(Context& context, bool isNew);

}  // namespace vorn
