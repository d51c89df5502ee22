#pragma once

#include <QString>
#include <optional>

namespace vorn {

/// What a link of a folder's page asks for.
struct LinkCommand {
  int openMode = 0;  ///< 0 read, 1 reply to the sender, 2 reply to all, 3 forward
  bool isNew = false;
  QString serialId;  ///< of the message

  bool operator==(const LinkCommand&) const = default;
};

/// Reads the address of a followed link: a command up to the first colon in any letter case, then
/// the message's serial identifier, percent-encoded where the browser did so. Nothing for an
/// ordinary address.
std::optional<LinkCommand> ReadLinkCommand(const QString& address);

}  // namespace vorn
