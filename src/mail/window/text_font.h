#pragma once

#include <QFont>

#include "storage/context.h"

namespace vorn {

enum class TextUse { Read, Written };

/// The font of a message's text by the settings: "MessageFont" and "MessageFontSize" in points for
/// what is read, "EditFont" and "EditFontSize" for what is written. Where they say nothing it is
/// the system's of fixed width.
QFont TextFont(Context& context, TextUse use);

}  // namespace vorn
