#pragma once

#include <QDeadlineTimer>
#include <QElapsedTimer>

struct sqlite3;

namespace vorn {

/// How long the engine waits for others that have a connection's file, and how long it works on a
/// condition of the user's.
class EngineWaits {
 public:
  EngineWaits() = default;
  EngineWaits(const EngineWaits&) = delete;
  EngineWaits& operator=(const EngineWaits&) = delete;

  /// Has the engine keep to it from now on; this must live as long as the handle.
  void Register(sqlite3* handle);
  /// When the statement that runs is to end.
  QDeadlineTimer& Deadline() { return deadline_; }

 private:
  static int WaitWhileBusy(void* self, int attempts);
  static int IsOverdue(void* self);

  QElapsedTimer busySince_;
  QDeadlineTimer deadline_{QDeadlineTimer::Forever};
};

}  // namespace vorn
