#include "transfer/pop3/retrieval_progress.h"

namespace vorn {
namespace {

constexpr int kProgressSteps = 1000;

}  // namespace

void RetrievalProgress::Arrive(qint64 bytes) {
  underWay_ -= bytes;
  done_ += bytes;
  ++fetched_.come;
}

void RetrievalProgress::Report(qint64 inFlight) {
  const qint64 done = done_ + inFlight;
  const qint64 step = total_ > 0 ? done * kProgressSteps / total_ : 0;
  if (step == lastStep_) return;
  lastStep_ = step;
  events_.Progress(total_, qMin(done, total_), fetched_);
}

}  // namespace vorn
