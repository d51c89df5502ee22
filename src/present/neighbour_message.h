#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// The message before (`step` -1) or after (1) another one in a folder, by their times, of those
/// that hold `search` unless it is empty; empty when there is none or the folder cannot be read.
QString NeighbourMessage(Context& context, const QString& folder, const QString& search,
                         const QString& serialId, int step);

}  // namespace vorn
