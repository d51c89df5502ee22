#pragma once

#include <QByteArray>
#include <QByteArrayList>

namespace vorn {

/// The time stamp of a greeting (RFC 1939 section 7, APOP), empty when it has none. Only one shaped
/// like a message identifier is given: others have been made up to draw out passwords.
QByteArray TimestampOf(const QByteArray& greeting);

/// What follows a capability's name in the body of an answer to CAPA (RFC 2449), in capitals;
/// nothing when it is not offered.
QByteArrayList CapabilityArguments(const QByteArray& body, QByteArrayView name);

/// Whether a capability without arguments is offered, in whatever letter case.
bool IsCapability(const QByteArray& body, QByteArrayView name);

}  // namespace vorn
