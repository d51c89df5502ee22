#pragma once

#include "mail/search/folder_query.h"
#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// How many messages of the profile a folder holds. Fails, as `Refused`, where its condition takes
/// longer than the `ConditionLimit` allows.
Result<int> CountMessages(Context& context, const FolderQuery& query);

}  // namespace vorn
