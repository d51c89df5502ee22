#include "transfer/plan/held_works.h"

#include <tuple>

#include "objects/profile/file_age.h"
#include "transfer/plan/check_job.h"
#include "transfer/plan/plan_host.h"

namespace vorn {

void HeldWorks::EndWait(CheckJob& job) {
  if (job.SetHeld(false)) host_.WorkIsHeld(QString());
}

bool HeldWorks::Take(const QString& work, CheckJob& job) {
  std::unique_ptr<WorkLock>& lock = works_[work];
  if (lock == nullptr) lock = std::make_unique<WorkLock>(context_, work);
  const bool wasHeld = lock->IsHeld();
  if (wasHeld || lock->Take()) {
    if (!wasHeld)
      std::ignore = CountWork(context_);  // without it an older copy passes unnoticed, no more
    EndWait(job);
    return true;
  }
  if (job.SetHeld(true)) host_.WorkIsHeld(lock->HeldWords());
  return false;
}

bool HeldWorks::IsHeld(const QString& work) const {
  const auto held = works_.find(work);
  return held != works_.end() && held->second->IsHeld();
}

}  // namespace vorn
