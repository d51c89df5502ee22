#pragma once

#include <QString>
#include <iterator>

namespace vorn {

/// What is done with the messages that are chosen on a folder's page, and with the page.
enum class PageCommand {
  Open,
  Reply,
  ReplyAll,
  Forward,
  File,
  ToDust,
  OutOfDust,
  NextUnopened,
  MarkUnopened,
  MarkOpened,
  Star,
  Gather,
  Stop,
  AddToBook,
  Print,
  ChooseAll,
  Count
};

/// The words that the actions and pictures of the commands are named by.
inline constexpr const char* kPageCommandWords[] = {
    "open",     "replay", "replayall", "forward", "file", "dust", "outofdust", "nextunopened",
    "unopened", "opened", "star",      "gather",  "stop", "book", "print",     "all"};
static_assert(std::size(kPageCommandWords) == static_cast<size_t>(PageCommand::Count));

inline QString WordOf(PageCommand command) {
  return QString::fromLatin1(kPageCommandWords[static_cast<size_t>(command)]);
}

}  // namespace vorn
