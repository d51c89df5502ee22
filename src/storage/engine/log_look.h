#pragma once

#include <QString>

#include "storage/base/result.h"

namespace vorn {

class Connection;

/// Looks, before a database is read for the first time, whether the log beside it is sound and its
/// own: the engine passes over one that it cannot follow, and reads that of another history. One
/// that does not belong to the file is noted and set aside, where `maySetAside`, else the file does
/// not open. What was damaged is noted at the connection. Nobody may have read through it yet.
Result<> LookAtLog(Connection& connection, const QString& path, const QString& password,
                   bool maySetAside);

}  // namespace vorn
