#pragma once

#include <atomic>

namespace vorn {

/// How long each statement with a condition of the user's may take on this thread, as long as this
/// lives; without one it is `DefaultMs`. They nest, the innermost counts.
class ConditionLimit {
 public:
  inline static int DefaultMs = 15000;

  /// Once `stop` is set, such a statement ends as well.
  explicit ConditionLimit(int ms, const std::atomic<bool>* stop = nullptr);
  ~ConditionLimit();
  ConditionLimit(const ConditionLimit&) = delete;
  ConditionLimit& operator=(const ConditionLimit&) = delete;

  /// Whether a statement was ended by it.
  bool IsReached() const { return reached_; }

  // For the engine's side.

  static int Ms();
  static bool IsStopped();
  static void NoteReached();

 private:
  ConditionLimit* outer_;
  int ms_;
  const std::atomic<bool>* stop_;
  bool reached_ = false;
};

}  // namespace vorn
