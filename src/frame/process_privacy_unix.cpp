#include <sys/resource.h>
#include <sys/stat.h>

#include "frame/process_privacy.h"

namespace vorn {

void ForbidCoreDumps() {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
}

void ForbidWritingByOthers() {
  constexpr mode_t kOthersWriting = S_IWGRP | S_IWOTH;
  umask(umask(0) | kOthersWriting);
}

}  // namespace vorn
