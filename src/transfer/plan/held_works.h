#pragma once

#include <QString>
#include <map>
#include <memory>

#include "storage/context.h"
#include "storage/work_lock.h"

namespace vorn {

class CheckJob;
class PlanHost;

/// The works that the jobs of the check plan have taken, or wait for.
class HeldWorks {
 public:
  HeldWorks(Context& context, PlanHost& host) : context_(context), host_(host) {}

  /// Whether the work is this program's alone by now; else it is tried again at the next tick, and
  /// the host is told for whom the job waits.
  bool Take(const QString& work, CheckJob& job);
  bool IsHeld(const QString& work) const;
  void Release(const QString& work) { works_.erase(work); }
  /// The job waits for no other program any more.
  void EndWait(CheckJob& job);
  void Clear() { works_.clear(); }

 private:
  Context& context_;
  PlanHost& host_;
  std::map<QString, std::unique_ptr<WorkLock>> works_;
};

}  // namespace vorn
