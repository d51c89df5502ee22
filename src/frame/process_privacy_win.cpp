#include "frame/process_privacy.h"

namespace vorn {

// Dumps are made by the system's error reporting only when its administrator asks for them.
void ForbidCoreDumps() {}

// There are no such modes.
void ForbidWritingByOthers() {}

}  // namespace vorn
