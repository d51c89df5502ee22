#pragma once

#include <QByteArray>

namespace vorn {

/// A stored source as it goes onto the wire (RFC 5321 section 4.5.2), without the final dot: the
/// "Bcc" field and the end mark of composed sources (a last line of one full stop) are left out,
/// bare CR and LF become CR LF, and lines that begin with a dot get another one.
QByteArray WireMessage(const QByteArray& source);

}  // namespace vorn
