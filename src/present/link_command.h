#pragma once

#include <QString>
#include <optional>

#include "mail/mail_request.h"

namespace vorn {

/// Reads the address of a followed link: a command up to the first colon in any letter case, then
/// the message's serial identifier, percent-encoded where the browser did so. Nothing for an
/// ordinary address.
std::optional<MailRequest> ReadLinkCommand(const QString& address);

}  // namespace vorn
