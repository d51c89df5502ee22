#include "frame/window/panes/unread_counter.h"

#include <QElapsedTimer>

#include "frame/window/panes/tree_nodes.h"
#include "mail/refusal_notice.h"
#include "mail/search/unread_count.h"
#include "objects/object_types.h"
#include "storage/engine/condition_limit.h"

namespace vorn {
namespace {

// Between two folders' counts, so that clicks and keys come in between.
constexpr int kCountPauseMs = 30;
constexpr int kLaterMs = 1000;
// A folder whose counting is slow is left alone for so many times as long.
constexpr qint64 kShare = 50;
// The windows stand still for so long at most, and a folder is given up after the longer one.
constexpr int kFirstLimitMs = 200;
constexpr int kLastLimitMs = 15000;

}  // namespace

UnreadCounter::UnreadCounter(Context& context, TreeNodes& nodes, std::function<bool()> isBusy)
    : context_(context), nodes_(nodes), isBusy_(std::move(isBusy)) {
  connect(&timer_, &QTimer::timeout, this, &UnreadCounter::CountNext);
}

void UnreadCounter::CountSoon() {
  folders_ = nodes_.Folders();
  timer_.start(kCountPauseMs);
}

void UnreadCounter::CountNext() {
  if (run_ != nullptr && run_->IsRunning()) return;
  if (isBusy_()) return;  // what arrives is counted once, at the end
  if (folders_.isEmpty()) {
    timer_.stop();
    return;
  }
  const SerialId folder = folders_.takeFirst();
  // What was thrown away does not wait to be read.
  if (folder == fixed_serial::kDust) return;
  if (!rests_[folder].hasExpired()) {
    folders_.append(folder);
    timer_.start(kLaterMs);
    return;
  }
  QElapsedTimer clock;
  clock.start();
  const ConditionLimit brief(kFirstLimitMs);
  const Result<qint64> count = CountUnread(context_, folder);
  if (brief.IsReached()) return CountElsewhere(folder);
  const bool isWaiting = folder == fixed_serial::kEditWait;
  nodes_.SetUnread(folder, count.ValueOr(-1), isWaiting ? CountUnsent(context_).ValueOr(0) : 0);
  rests_[folder].setRemainingTime(kShare * clock.elapsed());
}

void UnreadCounter::CountElsewhere(const SerialId& folder) {
  run_.reset(new ConditionRun(context_, UnreadQuestion(context_, folder), kLastLimitMs,
                              [this, folder](const ConditionRun::Answer& answer) {
                                const bool isKnown = answer.values && !answer.values->isEmpty();
                                nodes_.SetUnread(
                                    folder, isKnown ? answer.values->first().toLongLong() : -1);
                                rests_[folder].setRemainingTime(kShare * answer.ms);
                              }));
}

}  // namespace vorn
