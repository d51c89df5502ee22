#pragma once

namespace vorn {

/// Whether the user's session has a message bus (D-Bus). Where there is none the libraries would
/// start one, or wait for it.
bool HasSessionBus();

}  // namespace vorn
