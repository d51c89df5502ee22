#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

enum class DatabaseKind {
  Navigator = 0,   ///< the profiles
  Profile = 1,     ///< the current profile's objects
  Mail = 2,        ///< the current profile's messages and folder membership
  MailByPath = 3,  ///< another mail database of the current profile
};

/// Opens the database of a kind as the session's open one, making the file, its folder and its
/// tables when they are missing; but a file that the profile has noted is never made anew, see
/// `FileNote`. `path` is used for `MailByPath` only. False without a message;
/// the reason is in the session's `LastError`.
bool OpenDatabase(Context& context, DatabaseKind kind, const QString& path = {});

/// Makes sure that the file of a kind and its tables exist; closes it again. `path` and `password`
/// are used for `MailByPath` only.
bool CreateDatabase(Context& context, DatabaseKind kind, const QString& path = {},
                    const QString& password = {});

/// Makes a file of a kind at a platform path, with its tables; one that exists is left alone.
bool MakeDatabase(Context& context, DatabaseKind kind, const QString& path,
                  const QString& password);

/// Adds every object stored in a database of the first two kinds to `objects`, in the order of
/// their serial identifiers; one that is loaded already stays. An object that fails is skipped.
bool LoadObjects(Context& context, DatabaseKind kind, DiskCollection& objects);

/// The platform path of the profile's mail database.
QString MailDatabasePath(const Context& context);

}  // namespace vorn
