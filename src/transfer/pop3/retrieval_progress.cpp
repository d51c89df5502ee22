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
  const std::pair now(step, fetched_.undecided == 0);
  if (std::exchange(told_, now) == now) return;
  events_.Progress(total_, qMin(done, total_), fetched_);
}

}  // namespace vorn
