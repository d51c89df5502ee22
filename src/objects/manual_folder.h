#pragma once

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// Makes and stores a folder without conditions, which is filled by hand, and gives its serial
/// identifier. Fails when the name is missing or taken or nothing could be stored.
Result<SerialId> MakeManualFolder(Context& context, const QString& name);

}  // namespace vorn
