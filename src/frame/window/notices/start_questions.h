#pragma once

#include <QStringList>

#include "storage/context.h"

class QWidget;

namespace vorn {

// What the user is asked when the main window has come up.

/// Messages of which it is unknown whether they were sent, when a program ended without warning;
/// those that the user wants to look at.
SerialIds AskOfDoubtful(Context& context, QWidget& window);

/// Messages that were being written when the program ended without warning; those that the user
/// wants back, as they stood last.
SerialIds AskOfDrafts(Context& context, QWidget& window);

/// Once in a profile that an earlier version made: whether it shall look as new ones do. The answer
/// is kept.
bool AskOfLook(Context& context, QWidget& window);

}  // namespace vorn
