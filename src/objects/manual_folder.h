#pragma once

#include "storage/context.h"

namespace vorn {

/// Makes and stores a folder without conditions, which is filled by hand, and gives its serial
/// identifier. Empty, with the reason in `error`, when the name is missing or taken or nothing
/// could be stored.
QString MakeManualFolder(Context& context, const QString& name, QString* error);

}  // namespace vorn
