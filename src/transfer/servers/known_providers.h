#pragma once

#include <optional>

#include "transfer/servers/mail_servers.h"

namespace vorn {

/// The servers of a well-known provider for a mail address, by its domain. Nobody is asked.
std::optional<MailServers> KnownServers(const QString& address);

}  // namespace vorn
