#pragma once

#include "storage/context.h"

class QWidget;

namespace vorn {

/// Makes a message that waits one that is edited, or tells before `window` why it cannot be;
/// whether it is edited now.
bool CancelSending(Context& context, QWidget& window, const Disk& message);

}  // namespace vorn
