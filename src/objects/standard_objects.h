#pragma once

#include "storage/context.h"

namespace vorn {

/// Makes what every profile has, where it is missing: the four standard folders, the settings
/// "logo", and for a new or older profile the bookmark list and the event log. An object that
/// exists keeps its values. Run at every login, after the profile's objects are loaded.
/// False when something could not be saved.
bool CreateStandardObjects(Context& context);

/// How the main window shows its pages ("arrange" in the bag of its place).
enum class Arrangement { Cascaded = 0, Tiled = 2, Tabs = 3 };

}  // namespace vorn
