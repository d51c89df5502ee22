#pragma once

#include <QByteArrayView>
#include <QDateTime>

namespace vorn {

/// When a message arrived: the time of its uppermost Received field (RFC 5321 section 4.4), else
/// its Date field; invalid when it has neither or they cannot be read.
QDateTime MessageDate(QByteArrayView source);

/// Reads a date as mail writes it (RFC 5322 section 3.3), with or without the day's name, comments
/// and the zone names of old. Invalid when it is none.
QDateTime ParseMailDate(const QByteArray& text);

}  // namespace vorn
