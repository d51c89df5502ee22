#pragma once

#include <QString>
#include <functional>

namespace vorn {

class DataSession;

/// Makes the database file at `path`, whole or not at all, also when the process dies on the way:
/// it is made under another name beside it, filled by `makeTables` while it is open, closed,
/// brought to the disk and then given its name. What a killed creation left behind is removed.
///
/// A file that another program has put there meanwhile counts as made. False, with the reason in
/// the session's `LastError`, when there is none in the end. The folder is made when it is missing.
bool CreateDatabaseFile(DataSession& data, const QString& path, const QString& password,
                        const std::function<bool()>& makeTables);

}  // namespace vorn
