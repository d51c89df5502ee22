#include "storage/engine/engine_locks.h"

namespace vorn {

// The system's locks belong to the handle that took them.
void UseOwnLocks() {}

}  // namespace vorn
