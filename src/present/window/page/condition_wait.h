#pragma once

#include <functional>

#include "kit/window/notice_bar.h"
#include "storage/condition_run.h"

namespace vorn {

/// How long a window stands still at most before a folder's messages are looked for elsewhere.
inline constexpr int kBriefMs = 500;

/// The bar above a folder's page while its messages are being looked for elsewhere, with a button
/// that stops it.
class ConditionWait : public NoticeBar {
 public:
  /// `stopped` is called when the user has stopped it.
  ConditionWait(Context& context, std::function<void()> stopped);

  void Ask(const QString& question, const ConditionRun::Then& then);
  /// Whether anything is being asked.
  bool IsAsking() const { return !question_.isEmpty(); }
  /// Whether that is being asked; notes that the answer was wanted anew.
  bool IsAsking(const QString& question);
  /// Whether it was wanted anew meanwhile; once.
  bool TakeAgain() { return std::exchange(again_, false); }
  void Stop();

 private:
  ConditionWait(Context& context, std::function<void()> stopped, QPushButton* button);

  Context& context_;
  ConditionRunPtr run_;
  QString question_;
  bool again_ = false;
};

}  // namespace vorn
