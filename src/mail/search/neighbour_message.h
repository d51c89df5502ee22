#pragma once

#include <QString>

#include "mail/search/folder_search.h"
#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// The message before (`step` -1) or after (1) another one in a folder, by their times, of those
/// that hold `search` unless it is empty; empty when there is none.
Result<SerialId> NeighbourMessage(Context& context, const SerialId& folder,
                                  const FolderSearch& search, const SerialId& serialId, int step);

/// The message that is not opened yet and comes next after another one, in the order of the
/// folder's pages and from their begin when none follows. Without another one it is the first.
/// Empty when there is none.
Result<SerialId> NextUnopened(Context& context, const SerialId& folder, const FolderSearch& search,
                              const SerialId& serialId);

/// How many messages stand before one in the order of the folder's pages. Fails, as `NotFound`,
/// when the folder does not hold it.
Result<qint64> RowsBefore(Context& context, const SerialId& folder, const FolderSearch& search,
                          const SerialId& serialId);

}  // namespace vorn
