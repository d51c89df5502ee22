#pragma once

class QHostAddress;

namespace vorn {

/// Whether an address is one of the public network: none of this machine, of its own network or of
/// several machines at once (the special ones of RFC 6890), also where another form of address
/// holds such a one.
bool IsPublicAddress(const QHostAddress& address);

}  // namespace vorn
