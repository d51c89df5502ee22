#pragma once

#include <QDeadlineTimer>
#include <atomic>

namespace vorn {

/// How long a look into a file may take: an amount of time, and until somebody no longer wants to
/// know.
class LookBound {
 public:
  explicit LookBound(const std::atomic<bool>* stop, int ms = kMostMs) : stop_(stop), end_(ms) {}

  bool IsReached() const { return (stop_ != nullptr && *stop_) || end_.hasExpired(); }

 private:
  static constexpr int kMostMs = 10000;

  const std::atomic<bool>* stop_;
  QDeadlineTimer end_;
};

}  // namespace vorn
