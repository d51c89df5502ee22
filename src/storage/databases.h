#pragma once

#include <QString>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

enum class DatabaseKind {
  Navigator = 0,   ///< the profiles
  Profile = 1,     ///< the current profile's objects
  Mail = 2,        ///< the current profile's messages and folder membership
  MailByPath = 3,  ///< another mail database of the current profile
};

/// The name that bags have for the kind of the database that they are of.
inline const QString kDatabaseKey = QStringLiteral("db");

/// The database of a kind, open as the session's current one as long as this lives. The file, its
/// folder and its tables are made when they are missing; but a file that the profile has noted is
/// never made anew, see `FileNote`. `path` is used for `MailByPath` only. Converts to false,
/// with the reason in `Error`, when it does not open.
///
/// They nest: while one is open another may be, of the same file or not, and afterwards the session
/// has the outer one open again, with its result set and its transaction. Whoever loads an object
/// need not know what is open.
class OpenedDatabase {
 public:
  OpenedDatabase(Context& context, DatabaseKind kind, const QString& path = {});
  /// A file by its platform path and its password, which need not be the current profile's. It is
  /// opened as it is: neither made nor given tables.
  OpenedDatabase(Context& context, const QString& path, const QString& password);
  ~OpenedDatabase();
  OpenedDatabase(const OpenedDatabase&) = delete;
  OpenedDatabase& operator=(const OpenedDatabase&) = delete;

  explicit operator bool() const { return static_cast<bool>(opened_); }
  const StorageError& Error() const { return opened_.Error(); }

 private:
  DataSession& data_;
  Result<> opened_;
};

/// The same until the session closes it, for tests and tools that look into a file from outside.
Result<> OpenDatabase(Context& context, DatabaseKind kind, const QString& path = {});

/// Makes sure that the file of a kind and its tables exist; closes it again. `path` and `password`
/// are used for `MailByPath` only.
Result<> CreateDatabase(Context& context, DatabaseKind kind, const QString& path = {},
                        const QString& password = {});

/// Makes a file of a kind at a platform path, with its tables; one that exists is left alone.
Result<> MakeDatabase(Context& context, DatabaseKind kind, const QString& path,
                      const QString& password);

/// Adds every object stored in a database of the first two kinds to `objects`, in the order of
/// their serial identifiers; one that is loaded already stays. An object that fails is skipped.
Result<> LoadObjects(Context& context, DatabaseKind kind, DiskCollection& objects);

/// The platform path of the profile's mail database.
QString MailDatabasePath(const Context& context);

}  // namespace vorn
