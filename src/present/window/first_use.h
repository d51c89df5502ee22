#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// Whether there is neither an account nor a message yet.
bool IsFirstUse(Context& context);

/// What stands in the place of the first folder's page then, as HTML: how to begin.
QString FirstUseText(const Context& context);

}  // namespace vorn
