#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// Whether the message with that identifier (`FIELD_ID`) in the mail file at `file` reads back as
/// it was stored. Only then may another copy of it, such as the server's, be given up. False as
/// well when there is none, or the file cannot be read.
bool StoredCopyIsWhole(Context& context, const QString& file, const QString& messageId);

}  // namespace vorn
