#pragma once

#include <QByteArrayView>
#include <QDateTime>

namespace vorn {

/// The time of a message's uppermost Received field (RFC 5321 section 4.4), which the last server
/// wrote; invalid when it has none that can be read.
QDateTime ReceivedDate(QByteArrayView source);

/// What a message's Date field says, in its sender's zone; invalid when that cannot be read.
QDateTime SentDate(QByteArrayView source);

/// When a message arrived: the time of its uppermost Received field (RFC 5321 section 4.4), else
/// its Date field; invalid when it has neither or they cannot be read.
QDateTime MessageDate(QByteArrayView source);

/// Reads a date as mail writes it (RFC 5322 section 3.3), with or without the day's name, comments
/// and the zone names of old, in the zone that it names. Invalid when it is none.
QDateTime ParseMailDate(const QByteArray& text);

}  // namespace vorn
