#pragma once

#include <QString>
#include <QStringList>

#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/keys/code_file.h"

namespace vorn {

// A profile's files are all under one password: its user's, or else a recovery code, which is kept
// beside them or by the desktop.

/// The file with the profile's recovery code, which is its password when it has none of its user's.
CodeFile CodeFileOf(const Context& context, const Disk& profile);

/// The password of a profile's files for what was typed: nothing stands for the remembered recovery
/// code, where there is one, or for one that was put aside and still opens them.
QString PasswordFor(Context& context, const Disk& profile, const QString& typed);

/// Remembers the code of the profile that is logged in, in case its file has gone meanwhile.
void RememberCode(const Context& context);

/// The same as `PasswordFor` once the typed text is known to fit, before files are made with it: a
/// profile that has no file yet gets a recovery code when nothing is typed, a typed code is
/// remembered, and one that no file has any more is forgotten.
Result<QString> SettlePassword(Context& context, const Disk& profile, const QString& typed);

/// Whether a file of the profile is under a recovery code.
bool HasFileUnderCode(const Context& context, const Disk& profile);
/// Whether all are.
bool IsUnderCode(const Context& context, const Disk& profile);

/// Gives the files of a profile whose password opens them keys of the present kind (`FileKey`) when
/// they have those of an earlier version: all of them or none. Without a password they get a
/// recovery code. Tried once a day, since it may fail, or another program may have the profile;
/// where the files are so large that the user would wait, it is left for a change of the password.
/// Returns the password that opens them afterwards.
QString RenewFileKeys(Context& context, const Disk& profile, const QString& password);

/// Shares the profile with whatever else is logged in to it, until another profile is held or the
/// program ends; nobody can change its password meanwhile. Completes a password change that was
/// interrupted. Run before a login.
Result<> HoldProfile(Context& context, const Disk& profile);

/// Changes the password of all files of a profile, all or none, and of the session when the profile
/// is the logged-in one. An empty new password means a new recovery code; one that no longer holds
/// is forgotten. Refused while another program is logged in to the profile. The sentence of a
/// failure says which password holds.
Result<> ChangeProfilePassword(Context& context, const Disk& profile, const QString& oldPassword,
                               const QString& newPassword);

/// Whether the user has chosen a password for the logged-in profile: without one its files are
/// under a recovery code.
bool HasOwnPassword(const Context& context);

/// Remembers in the profile's own database, which `password` opens, a code that files it once had
/// and copies of them stay under. Another former password is not remembered.
Result<> NoteFormerCode(Context& context, const Disk& profile, const QString& password,
                        const QString& former);

/// The passwords without which a file that was once the logged-in profile's may be shut, and which
/// its user cannot know: none at all, and recovery codes that it had.
QStringList FormerPasswords(Context& context);
/// The same of a profile whose files `password` opens, before its login.
QStringList FormerPasswords(Context& context, const Disk& profile, const QString& password);

/// Gives a mail file at `path` that opens with `itsPassword` the password of the logged-in profile,
/// so that it can be one of its files.
Result<> AdoptMailFile(Context& context, const QString& path, const QString& itsPassword);

}  // namespace vorn
