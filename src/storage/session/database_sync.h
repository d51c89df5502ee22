#pragma once

#include <QString>

#include "storage/base/result.h"

namespace vorn {

class DataSession;

/// Forces all that was committed to the file at `path` onto the disk. Only after this may something
/// outside, such as a mail server's copy, be given up. The file must have been opened.
Result<> SyncDatabase(DataSession& data, const QString& path);

}  // namespace vorn
