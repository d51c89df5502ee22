#pragma once

#include <QStringList>

#include "storage/context.h"

namespace vorn {

// Acts on messages of the profile's mail database by their serial identifiers, on all of them or on
// none. False on failure; the reason is in the session's `LastError`. What is being handed over to
// a server stays as it is; `underWay` gets the subjects of those.

/// What the user is told where there is no hand-filled folder.
QString NoFolderWords();

/// Puts messages into the dust bin or takes them out of it.
bool SetDust(Context& context, const QStringList& messages, bool dust,
             QStringList* underWay = nullptr);
/// Files messages into the hand-filled folder `into` and takes them out of the folder `from`;
/// either may be empty.
bool FileMessages(Context& context, const QStringList& messages, const QString& into,
                  const QString& from = {});
/// Deletes messages, and what is filed of them, for good.
bool DeleteMessages(Context& context, const QStringList& messages, QStringList* underWay = nullptr);
/// How many messages from that address wait to be sent; 0 as well when the file cannot
/// be read.
int CountWaiting(Context& context, const QString& address);
/// Deletes everything in the dust bin for good.
bool EmptyDust(Context& context);

}  // namespace vorn
