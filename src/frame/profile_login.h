#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// The loaded profile with that name, or null.
DiskPtr FindProfile(const Context& context, const QString& name);

/// Whether the profile's database opens with the password. A profile whose database does not exist
/// yet takes any: the file is made with the typed one.
bool TestProfilePassword(Context& context, const Disk& profile, const QString& password);

/// Notes a login in the session bag: "password", "status" (the profile's serial identifier) and
/// "mode" = "login".
void BeginLogin(Context& context, const Disk& profile, const QString& password);

/// The steps that load the profile named by the session bag, in their order. Each is short; the
/// splash window runs one per tick.
enum class LoginStep { LoadProfiles = 0, EnterProfile, MarkDefault, LoadObjects, StandardObjects };
inline constexpr int kLoginSteps = 5;

/// Runs one step; `password` is the typed one. On false the profile cannot be used and `error` says
/// why.
bool RunLoginStep(Context& context, LoginStep step, const QString& password, QString* error);

/// The whole login without windows. `name` empty means the default profile, or the only one.
bool LogIn(Context& context, const QString& name, const QString& password, QString* error);

/// The profile "Administrator" of the very first start, stored and loaded, also when another
/// program has just made it; null when it cannot be saved.
DiskPtr CreateFirstProfile(Context& context);

}  // namespace vorn
