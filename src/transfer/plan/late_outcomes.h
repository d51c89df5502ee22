#pragma once

#include <QDeadlineTimer>
#include <QString>
#include <functional>
#include <map>

#include "storage/base/result.h"
#include "storage/base/serial_id.h"

namespace vorn {

class CheckJob;

/// What a job cannot do just now since a file is in use, and for how long that is tried.
class LateOutcomes {
 public:
  /// Lets a job go on only when `store` has worked, which `IsStored` tries; when it has not worked
  /// for long, `failed` is told.
  void StoreLater(const CheckJob& job, std::function<Result<>()> store,
                  std::function<void(const StorageError&)> failed);
  /// Whether nothing of the job is left to be stored.
  bool IsStored(const CheckJob& job);
  /// Begins the session of a send job's message again when it has ended. False when that has been
  /// so for long.
  bool HandOverLater(const CheckJob& job);
  void EndHandover(const CheckJob& job);
  void Clear();

 private:
  struct Unstored {
    std::function<Result<>()> store;
    std::function<void(const StorageError&)> failed;
    QDeadlineTimer limit;
  };
  std::map<SerialId, Unstored> unstored_;  // by the job; also waiting messages that are unread yet
  std::map<SerialId, QDeadlineTimer> handovers_;  // that wait for their file, by the job
};

}  // namespace vorn
