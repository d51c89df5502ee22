#pragma once

#include <array>

namespace vorn {

/// Whether and when a connection is encrypted, by the stored numbers of the accounts' "Security"
/// keys.
enum class Security { None = 0, StartTls = 1, Tls = 2 };

/// The usual ports of servers, by that (RFC 1939, RFC 8314; RFC 5321, RFC 6409).
inline constexpr std::array kPop3Ports = {110, 110, 995};
inline constexpr std::array kSmtpPorts = {25, 587, 465};

}  // namespace vorn
