#pragma once

#include <QStringList>

#include "storage/context.h"

namespace vorn {

// Acts on messages of the profile's mail database by their serial identifiers, on all of them or on
// none. False on failure; the reason is in the session's `LastError`.

/// What the user is told where there is no hand-filled folder.
QString NoFolderWords();

/// Puts messages into the dust bin or takes them out of it.
bool SetDust(Context& context, const QStringList& messages, bool dust);
/// Files messages into the hand-filled folder `into` and takes them out of the folder `from`;
/// either may be empty.
bool FileMessages(Context& context, const QStringList& messages, const QString& into,
                  const QString& from = {});
/// Deletes messages, and what is filed of them, for good.
bool DeleteMessages(Context& context, const QStringList& messages);
/// Deletes everything in the dust bin for good.
bool EmptyDust(Context& context);

}  // namespace vorn
