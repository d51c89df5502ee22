#pragma once

namespace vorn {

/// Keeps what the process holds in memory, mail and passwords, from being written to disk when it
/// crashes, where the platform would do so.
void ForbidCoreDumps();

}  // namespace vorn
