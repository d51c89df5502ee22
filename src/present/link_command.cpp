#include "present/link_command.h"

#include <QUrl>

namespace vorn {
namespace {

struct CommandWord {
  QLatin1String word;
  OpenMode mode;
};

constexpr CommandWord kCommands[] = {
    {QLatin1String("preview:"), OpenMode::Show},
    {QLatin1String("replay:"), OpenMode::Reply},
    {QLatin1String("replayall:"), OpenMode::ReplyAll},
    {QLatin1String("forward:"), OpenMode::Forward},
};

}  // namespace

std::optional<MailRequest> ReadLinkCommand(const QString& address) {
  const qsizetype end = address.indexOf(u':') + 1;
  const QString word = address.left(end).toLower();
  for (const CommandWord& command : kCommands) {
    if (word != command.word) continue;
    return MailRequest::Of(SerialId(QUrl::fromPercentEncoding(address.mid(end).toUtf8())),
                           command.mode);
  }
  return std::nullopt;
}

}  // namespace vorn
