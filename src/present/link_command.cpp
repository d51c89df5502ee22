#include "present/link_command.h"

#include <QUrl>

namespace vorn {
namespace {

struct LinkCommand {
  const char16_t* word;
  OpenMode mode;
};

constexpr LinkCommand kCommands[] = {
    {link_word::kShow, OpenMode::Show},
    {link_word::kReply, OpenMode::Reply},
    {link_word::kReplyAll, OpenMode::ReplyAll},
    {link_word::kForward, OpenMode::Forward},
};

}  // namespace

std::optional<MailRequest> ReadLinkCommand(const QString& address) {
  for (const LinkCommand& command : kCommands) {
    const QString start = LinkStart(command.word);
    if (!address.startsWith(start, Qt::CaseInsensitive)) continue;
    const QString message = address.mid(start.size());
    return MailRequest::Of(SerialId(QUrl::fromPercentEncoding(message.toUtf8())), command.mode);
  }
  return std::nullopt;
}

}  // namespace vorn
