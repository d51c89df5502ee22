#pragma once

#include <QString>

namespace vorn {

/// What a message window asks of the program around it.
class MessageHost {
 public:
  virtual ~MessageHost() = default;
  /// Plans the sending of a message that waits.
  virtual void SendMessage(const QString& serialId) = 0;
  /// A message was stored or changed; pages that show it are out of date.
  virtual void MessageStored() = 0;
};

}  // namespace vorn
