#pragma once

namespace vorn {

/// Keeps what the process holds in memory, mail and passwords, from being written to disk when it
/// crashes, where the platform would do so.
void ForbidCoreDumps();

/// Nobody else may write to what the process and its libraries make, where the user's own mask of
/// modes would let everybody.
void ForbidWritingByOthers();

}  // namespace vorn
