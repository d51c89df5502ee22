#pragma once

#include <QString>
#include <optional>

#include "mail/mail_request.h"

namespace vorn {

/// The links to a message, each by the word before the colon of its address, as a page has it.
namespace link_word {
inline constexpr char16_t kShow[] = u"preview";
inline constexpr char16_t kReply[] = u"REPLAY";
inline constexpr char16_t kReplyAll[] = u"REPLAYALL";
inline constexpr char16_t kForward[] = u"FORWARD";
}  // namespace link_word

/// What the address of such a link begins with: the word and the colon.
inline QString LinkStart(const char16_t* word) {
  return QString::fromUtf16(word) + u':';
}

/// Reads the address of a followed link: its word up to the first colon in any letter case, then
/// the message's serial identifier, percent-encoded where the browser did so. Nothing for an
/// ordinary address.
std::optional<MailRequest> ReadLinkCommand(const QString& address);

}  // namespace vorn
