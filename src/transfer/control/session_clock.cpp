#include "transfer/control/session_clock.h"

namespace vorn {

SessionClock::SessionClock(const ServerPatience& patience) : patience_(patience) {
  timeout_.setSingleShot(true);
  connect(&timeout_, &QTimer::timeout, this, &SessionClock::Silent);
  connect(&period_, &QTimer::timeout, this, &SessionClock::PeriodOver);
}

void SessionClock::WaitForConnection() {
  timeout_.start(patience_.ConnectMs);
}

void SessionClock::WaitForReply(bool decides) {
  timeout_.start(decides ? patience_.DecisionMs : patience_.ReplyMs);
}

void SessionClock::BeginPeriod(qsizetype replies) {
  bytes_ = 0;
  repliesBefore_ = replies;
  sinceBegin_.start();
  period_.start(patience_.RatePeriodMs);
}

bool SessionClock::IsFastEnough(qsizetype replies) const {
  const bool late = sinceBegin_.elapsed() > patience_.RatePeriodMs * qint64{3} / 2;
  return bytes_ >= ServerPatience::kLeastBytes || replies != repliesBefore_ || late;
}

void SessionClock::Stop() {
  timeout_.stop();
  period_.stop();
}

}  // namespace vorn
