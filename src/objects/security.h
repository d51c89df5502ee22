#pragma once

namespace vorn {

/// Whether and when a connection is encrypted, by the stored numbers of the accounts' "Security"
/// keys.
enum class Security { None = 0, StartTls = 1, Tls = 2 };

}  // namespace vorn
