#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// How many messages of a folder are not yet opened.
Result<qint64> CountUnread(Context& context, const SerialId& folder);
/// The statement that tells it; empty when there is no such folder.
QString UnreadQuestion(Context& context, const SerialId& folder);

}  // namespace vorn
