#pragma once

#include <QFont>

#include "objects/settings.h"

namespace vorn {

/// The font of a message's text by the settings; where they say nothing it is the system's of fixed
/// width.
QFont TextFont(Context& context, FontUse use);

}  // namespace vorn
