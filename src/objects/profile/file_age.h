#pragma once

#include <QStringList>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

// A mail file that holds fewer messages than its profile remembers, and was written to less often,
// is an older copy.
//
// It also counts the times in which messages were received or sent, and the profile remembers
// the count. A file that has a smaller one than remembered is an older copy, or has lost its log:
// what was received since is not in it, and what was sent since seems to wait.

/// Counts one more in the profile's mail file. To be called before anything is received or sent,
/// and again before the server's copies of what was received are given up.
Result<> CountWork(Context& context);

/// How often the mail file at a path was written to; 0 where that cannot be told.
qint64 ChangesOf(Context& context, const QString& file);

/// The profile's mail files, by their paths, that are older than remembered.
QStringList OlderFiles(Context& context);

/// Whether a file is one that was taken for what it is, or cannot be read: not so the right one
/// that came back in its place.
bool WasOlder(Context& context, const QString& file);

/// Takes a file for what it is: it is no longer older than remembered.
Result<> AcceptAge(Context& context, const QString& file);

}  // namespace vorn
