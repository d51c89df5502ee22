#pragma once

#include <memory>

#include "storage/keys/secret_store.h"

namespace vorn {

/// The secrets of the user's desktop: a service of the session (freedesktop.org's Secret Service,
/// or KWallet), which may ask the user to unlock it, for two minutes at most; one that gives no
/// sign of life is not waited for. Null where the session has no bus to ask it by. To be used from
/// one thread.
std::unique_ptr<SecretStore> DesktopSecrets();

}  // namespace vorn
