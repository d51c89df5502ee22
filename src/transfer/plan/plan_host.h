#pragma once

#include <QString>

#include "events/event_kinds.h"
#include "storage/bags/disk.h"

namespace vorn {

/// What a question for a password says.
struct PasswordQuestion {
  QString account = {};     ///< its name
  bool toSend = false;      ///< it is wanted to send, and not to receive
  bool wasRefused = false;  ///< the server did not take what was typed before
};

/// What the check plan asks of the program around it.
class PlanHost {
 public:
  virtual ~PlanHost() = default;
  /// Queues a window request.
  virtual void PostRequest(const DiskPtr& request) = 0;
  /// Records an event that refers to an object or a message.
  virtual void AddEvent(EventLevel level, EventMode mode, const SerialId& reference,
                        const QString& title, const QString& category, const QString& text) = 0;
  /// The Tools menu's first entry, send and receive messages.
  virtual void SendAndReceive() = 0;
  /// Asks the user for the account to send with; its serial identifier, empty when he declines.
  virtual SerialId ChooseAccount(const QString& title, const QString& prompt) = 0;
  /// Asks the user for an account's receive password, which is not saved; empty when he declines.
  virtual QString AskPassword(const PasswordQuestion& question) = 0;
  /// Work has to wait for another program; told once for each wait, with who it is, and again, with
  /// an empty sentence, when it waits no longer.
  virtual void WorkIsHeld(const QString& sentence) = 0;
  /// How it stands with a message that waits is another than before; lists show it.
  virtual void WaitingChanged() {}
};

}  // namespace vorn
