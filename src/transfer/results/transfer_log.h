#pragma once

#include "storage/base/storage_error.h"
#include "transfer/plan/session_record.h"
#include "transfer/protocol/pop_events.h"

namespace vorn {

/// What sessions came to.
struct ReceiveCounts {
  int stored = 0;
  int known = 0;    ///< stored before, not downloaded again
  int stopped = 0;  ///< by a receive-stop rule
  int sent = 0;
  int doubtful = 0;  ///< handed over without a clear answer
  int errors = 0;
};

/// Writes down what a session comes to: in the record of the job that it serves, and in the counts.
class TransferLog {
 public:
  /// A session begins that serves this job, or one without a job; until `End`.
  void Begin(const DiskPtr& job) { job_ = job; }
  void End() { job_.reset(); }
  /// The job that the running session serves; null for none.
  const DiskPtr& Job() const { return job_; }

  void Add(const QString& text);
  void AddError(PopError code, const QString& text);
  /// The same for a job whose session may have ended.
  void AddError(SessionRecord record, const QString& text);
  /// Something could not be stored.
  void StoreFailed(const QString& sentence, const StorageError& reason = {});
  /// What is noted of the messages in a mailbox could not be read or stored.
  void ListingFailed(const StorageError& reason);

  /// Since the program began.
  ReceiveCounts& Counts() { return counts_; }
  const ReceiveCounts& Counts() const { return counts_; }

 private:
  DiskPtr job_;
  ReceiveCounts counts_;
};

}  // namespace vorn
