#pragma once

#include <QString>

namespace vorn {

/// The line above what a reply quotes, as new profiles have it, in the interface's language.
QString UsualReplyLine();

/// A stored line as it is used and shown: the usual one of either language is in the interface's,
/// any other one is the user's own.
QString ShownReplyLine(const QString& stored);

}  // namespace vorn
