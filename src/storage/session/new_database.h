#pragma once

#include <QString>
#include <functional>

#include "storage/base/result.h"

namespace vorn {

class DataSession;

/// Makes the database file at `path`, whole or not at all, also when the process dies on the way:
/// it is made under another name beside it, filled by `makeTables` while it is open, closed,
/// brought to the disk and then given its name. What a killed creation left behind is removed.
///
/// A file that another program has put there meanwhile counts as made; the result
/// says why there is none in the end. The folder is made when it is missing.
Result<> CreateDatabaseFile(DataSession& data, const QString& path, const QString& password,
                            const std::function<Result<>()>& makeTables);

}  // namespace vorn
