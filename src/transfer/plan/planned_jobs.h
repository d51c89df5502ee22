#pragma once

#include <QScopedValueRollback>
#include <QString>

#include "storage/bags/disk.h"
#include "storage/context.h"
#include "transfer/plan/check_job.h"

namespace vorn {

/// The jobs of the check plan, bags in plan order, and on whose behalf more are planned just now.
class PlannedJobs {
 public:
  explicit PlannedJobs(Context& context) : context_(context) {}

  const DiskCollection& All() const { return jobs_; }
  bool Contains(const SerialId& serial) const { return jobs_.Contains(serial); }
  void Add(const CheckJob& job) { jobs_.Add(job.Bag()); }
  void Remove(const SerialId& serial) { jobs_.Remove(serial); }
  void Clear();
  /// An identifier for a job that is to be added.
  SerialId NewSerial() const;
  /// Whether a job runs or waits, other than automatic checking.
  bool HasWork() const;
  /// Whether a message is being sent or planned to be.
  bool IsSending() const;

  /// Whether automatic checking is at work, so that nobody asked for what happens.
  bool RunsPeriodically() const { return runsPeriodically_; }
  /// Says so, or that it is not, until what is given back ends.
  [[nodiscard]] QScopedValueRollback<bool> Periodically(bool runs) {
    return QScopedValueRollback(runsPeriodically_, runs);
  }

 private:
  Context& context_;
  DiskCollection jobs_;
  bool runsPeriodically_ = false;
};

}  // namespace vorn
