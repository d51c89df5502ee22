#pragma once

#include "transfer/control/pop.h"
#include "transfer/plan/check_plan.h"
#include "transfer/results/transfer_events.h"

namespace vorn {

/// Everything that moves mail: the one transfer control, the plan that starts it and the events
/// that answer it. The owner calls `Tick` every 100 milliseconds; when a session ends, the next one
/// begins without waiting for that.
class MailTraffic {
 public:
  MailTraffic(Context& context, PlanHost& host, StatusPanel& panel)
      : plan_(context, pop_, host), events_(context, plan_, pop_, panel) {
    pop_.SetEvents(&events_);
    QObject::connect(
        &pop_, &Pop::Idle, &pop_, [this] { GoOn(); }, Qt::QueuedConnection);
  }

  CheckPlan& Plan() { return plan_; }
  Pop& Control() { return pop_; }
  const TransferEvents& Events() const { return events_; }
  void Tick() { plan_.Tick(); }

 private:
  // From the end of one session to the start of the next are at most these steps.
  static constexpr int kSteps = 3;
  void GoOn() {
    for (int i = 0; i < kSteps && !pop_.Busy() && !plan_.IsEmpty(); ++i) plan_.Tick();
  }

  Pop pop_;
  CheckPlan plan_;
  TransferEvents events_;
};

}  // namespace vorn
