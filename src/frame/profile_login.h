#pragma once

#include <QString>
#include <QStringList>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// The loaded profile with that name, or null.
DiskPtr FindProfile(const Context& context, const QString& name);

/// The loaded profile that was logged in last, or else the only one; null for neither.
DiskPtr DefaultProfile(const Context& context);

enum class LoginCheck {
  Opens,
  FilesLost,  ///< files that the profile had are not there, see `LostFiles`
};

/// Whether the profile can be entered with what was typed: a password, a recovery code, or nothing,
/// which stands for the remembered recovery code. It fails for a wrong password, a damaged file, or
/// while another program changes the password. The profile is held from then on. One whose database
/// never existed takes any password: the file is made with the typed one. Takes over what the
/// profile's own database knows of the profile when the list of profiles had to be made anew.
Result<LoginCheck> CheckLogin(Context& context, const DiskPtr& profile, const QString& typed);

/// What to tell a user whom `CheckLogin` has refused. Only after a wrong password are they asked to
/// look at what they entered.
QString LoginRefusal(const StorageError& reason);

/// What the user wants done about lost files.
struct LostFileChoice {
  bool create = false;      ///< new, empty ones in their place
  QStringList reconnect;    ///< files that are the lost ones
  QStringList former = {};  ///< passwords or codes, typed, that they may be under
};

/// Carries the choice out.
Result<> ResolveLostFiles(Context& context, const DiskPtr& profile, const QString& typed,
                          const LostFileChoice& choice);

/// Notes a login in the session bag: the password and, as the answer, the profile's serial
/// identifier.
void BeginLogin(Context& context, const Disk& profile, const QString& password);

/// The steps that load the profile named by the session bag, in their order. Each is short; the
/// splash window runs one per tick.
enum class LoginStep { LoadProfiles = 0, EnterProfile, MarkDefault, LoadObjects, StandardObjects };
inline constexpr int kLoginSteps = 5;

/// Runs one step. When it fails, the profile cannot be used.
Result<> RunLoginStep(Context& context, LoginStep step, const QString& typed);

/// The whole login without windows. `name` empty means the default profile, or the only one. With
/// lost files it fails, as `NotFound`, unless `choice` says what to do about them.
Result<> LogIn(Context& context, const QString& name, const QString& password,
               const LostFileChoice& choice = {});

/// The profile "Administrator" of the very first start, stored and loaded, also when another
/// program has just made it.
Result<DiskPtr> CreateFirstProfile(Context& context);

}  // namespace vorn
