#include "storage/engine/engine_waits.h"

#include <QThread>

#include "storage/engine/condition_limit.h"
#include "storage/engine/engine.h"

namespace vorn {
namespace {

constexpr int kBusyTimeoutMs = 5000;
constexpr int kBusyPauseMs = 1;
constexpr int kStepsBetweenLooks = 500;              // each may take long
constexpr qint64 kMostMemory = 768LL * 1024 * 1024;  // of the engine, while a condition runs

}  // namespace

void EngineWaits::Register(sqlite3* handle) {
  sqlite3_busy_handler(handle, &EngineWaits::WaitWhileBusy, this);
  sqlite3_progress_handler(handle, kStepsBetweenLooks, &EngineWaits::IsOverdue, this);
}

// The engine's own handler waits longer and longer, and so misses the gaps that a program leaves
// which stores much.
int EngineWaits::WaitWhileBusy(void* self, int attempts) {
  QElapsedTimer& since = static_cast<EngineWaits*>(self)->busySince_;
  if (attempts == 0) since.start();
  if (since.hasExpired(kBusyTimeoutMs)) return 0;
  QThread::msleep(kBusyPauseMs);
  return 1;
}

int EngineWaits::IsOverdue(void* self) {
  const QDeadlineTimer& deadline = static_cast<EngineWaits*>(self)->deadline_;
  // What is sorted or told apart lies in memory.
  const bool isLarge = !deadline.isForever() && sqlite3_memory_used() > kMostMemory;
  const bool ends = isLarge || deadline.hasExpired() || ConditionLimit::IsStopped();
  if (ends) ConditionLimit::NoteReached();
  return ends ? 1 : 0;
}

}  // namespace vorn
