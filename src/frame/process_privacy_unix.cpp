#include <sys/resource.h>

#include "frame/process_privacy.h"

namespace vorn {

void ForbidCoreDumps() {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
}

}  // namespace vorn
