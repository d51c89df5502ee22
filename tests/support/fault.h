#pragma once

#include <QByteArray>

namespace vorn::test {

/// What goes wrong at one command of a session.
struct Fault {
  enum class Kind {
    None,
    Cut,    ///< send the first `after` bytes of the reply, then break the connection
    Stall,  ///< send the first `after` bytes of the reply, then nothing more
    Reply,  ///< answer with `text` instead
    Torn,   ///< end a reply of several lines after `after` bytes of them, as if it were whole
  };
  Kind kind = Kind::None;
  QByteArray command;  ///< such as "RETR"; "GREETING" for the greeting, "." for the end of data
  int occurrence = 1;  ///< the command's first, second ... time in the session
  qsizetype after = 0;
  QByteArray text;
};

}  // namespace vorn::test
