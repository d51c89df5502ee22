#pragma once

namespace vorn {

/// Makes the locks that the engine takes on database files from now on locks of its own, where the
/// system has such (Linux, open file description locks, see fcntl(2)). The usual ones belong to the
/// whole process and end when anything in it closes any descriptor of the same file: a file dialog
/// that looks at the file's type is enough. Another program then finds itself alone and deletes the
/// log that this one goes on writing to. To be called before a database is opened; may be repeated.
void UseOwnLocks();

}  // namespace vorn
