#include "transfer/plan/planned_jobs.h"

#include <algorithm>

#include "transfer/plan/check_job.h"

namespace vorn {

SerialId PlannedJobs::NewSerial() const {
  return context_.Data.NewSerialID(QString::number(jobs_.Count()) + u'_');
}

bool PlannedJobs::HasWork() const {
  return std::any_of(jobs_.begin(), jobs_.end(),
                     [](const CheckJob& job) { return !job.Is(CheckJob::Mode::Periodic); });
}

bool PlannedJobs::IsSending() const {
  return std::any_of(jobs_.begin(), jobs_.end(), [](const CheckJob& job) {
    return job.Is(CheckJob::Mode::Send) || job.Is(CheckJob::Mode::Look);
  });
}

void PlannedJobs::Clear() {
  while (!jobs_.IsEmpty()) jobs_.Remove(DiskPtr(jobs_.First())->Serial());
}

}  // namespace vorn
