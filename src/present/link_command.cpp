#include "present/link_command.h"

#include <QUrl>

namespace vorn {
namespace {

struct CommandWord {
  QLatin1String word;
  int openMode;
  bool isNew;
};

constexpr CommandWord kCommands[] = {
    {QLatin1String("preview:"), 0, false},
    {QLatin1String("replay:"), 1, true},
    {QLatin1String("replayall:"), 2, true},
    {QLatin1String("forward:"), 3, true},
};

}  // namespace

std::optional<LinkCommand> ReadLinkCommand(const QString& address) {
  const qsizetype end = address.indexOf(u':') + 1;
  const QString word = address.left(end).toLower();
  for (const CommandWord& command : kCommands) {
    if (word != command.word) continue;
    const QString serialId = QUrl::fromPercentEncoding(address.mid(end).toUtf8());
    return LinkCommand{command.openMode, command.isNew, serialId};
  }
  return std::nullopt;
}

}  // namespace vorn
