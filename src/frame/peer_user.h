#pragma once

#include <QString>
#include <QtGlobal>

namespace vorn {

/// Where the programs of this user meet that work on a data folder (an absolute one): a name that
/// no other user can take. `hash` tells the folders apart.
QString MeetingPlace(const QString& folder, const QString& hash);

/// Whether what lies at that place, if anything, is this user's.
bool IsOwnPlace(const QString& place);

/// Whether the program at the other end of a local socket is this user's.
bool IsOwnPeer(qintptr socket);

}  // namespace vorn
