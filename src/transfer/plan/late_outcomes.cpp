#include "transfer/plan/late_outcomes.h"

#include <utility>

#include "transfer/plan/check_job.h"
#include "transfer/plan/session_record.h"

namespace vorn {
namespace {

// For how long it is tried to store what came of a message.
constexpr int kStoreAgainMs = 120000;

}  // namespace

void LateOutcomes::StoreLater(const CheckJob& job, std::function<Result<>()> store,
                              std::function<void(const StorageError&)> failed) {
  unstored_[job.Serial()] = {std::move(store), std::move(failed), QDeadlineTimer(kStoreAgainMs)};
}

bool LateOutcomes::HandOverLater(const CheckJob& job) {
  const auto [limit, isFirst] = handovers_.try_emplace(job.Serial(), kStoreAgainMs);
  if (limit->second.hasExpired()) return false;
  SessionRecord(job.Bag()).SetAgain(true);
  return true;
}

bool LateOutcomes::IsStored(const CheckJob& job) {
  const auto found = unstored_.find(job.Serial());
  if (found == unstored_.end()) return true;
  const Unstored unstored = found->second;  // a question on the way may end all that is planned
  if (const Result<> stored = unstored.store(); !stored) {
    if (!unstored.limit.hasExpired()) return false;
    unstored.failed(stored.Error());
  }
  unstored_.erase(job.Serial());
  return true;
}

void LateOutcomes::EndHandover(const CheckJob& job) {
  handovers_.erase(job.Serial());
}

void LateOutcomes::Clear() {
  unstored_.clear();
  handovers_.clear();
}

}  // namespace vorn
