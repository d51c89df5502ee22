#pragma once

#include <QString>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// What the user is told of an unsent message that its server refused for good (`SendRefusals`):
/// what to do, when it was tried and what the server said, a line each. Empty where none did,
/// or where that is not known. `file` is the stored path of the mail database.
QString RefusalNotice(Context& context, const QString& file, const SerialId& serialId);

/// How many unsent messages of the profile need the user: refused ones, and those of which nobody
/// knows whether they were sent.
Result<qsizetype> CountUnsent(Context& context);

}  // namespace vorn
