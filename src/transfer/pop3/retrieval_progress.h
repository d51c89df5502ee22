#pragma once

#include <utility>

#include "transfer/protocol/pop_events.h"

namespace vorn {

/// How far the retrieval of a mailbox is, in messages, and in bytes by the sizes that the server
/// announced. Both are of what is fetched alone, and of what may yet be.
class RetrievalProgress {
 public:
  explicit RetrievalProgress(PopEvents& events) : events_(events) {}

  /// A message is in the mailbox.
  void Expect(qint64 bytes) {
    total_ += bytes;
    ++fetched_.undecided;
  }
  /// It has been asked for.
  void Ask(qint64 bytes) {
    underWay_ += bytes;
    --fetched_.undecided;
    ++fetched_.wanted;
  }
  /// It has come, or been refused.
  void Arrive(qint64 bytes);
  /// It is not asked for.
  void Skip(qint64 bytes) {
    total_ -= bytes;
    --fetched_.undecided;
  }
  /// What has come is to be asked for once more.
  void Return(qint64 bytes) {
    done_ -= bytes;
    --fetched_.come;
    --fetched_.wanted;
    ++fetched_.undecided;
  }
  /// What has been asked for and not come.
  qint64 UnderWay() const { return underWay_; }

  /// Tells how far it is, with the bytes that have come of the message that is arriving; not more
  /// often than anybody can see.
  void Report(qint64 inFlight);

 private:
  PopEvents& events_;
  qint64 total_ = 0;
  qint64 underWay_ = 0;
  qint64 done_ = 0;
  FetchedMessages fetched_;
  std::pair<qint64, bool> told_{-1, false};  // in steps, and whether all were decided
};

}  // namespace vorn
