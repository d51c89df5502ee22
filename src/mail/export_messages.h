#pragma once

#include <QString>
#include <functional>

#include "mail/mail_archive.h"
#include "storage/context.h"

namespace vorn {

/// How far a long work is: so many messages are done. False ends it.
using WorkProgress = std::function<bool(int done)>;

/// Writes a folder's messages, oldest first, to a new file or folder at `path`. False, with a
/// sentence in `error`, when it could not go on or was ended; `count` messages were written.
bool ExportMessages(Context& context, const QString& folder, ArchiveFormat format,
                    const QString& path, int* count, QString* error,
                    const WorkProgress& progress = {});

}  // namespace vorn
