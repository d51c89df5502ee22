#pragma once

#include "transfer/check_plan.h"
#include "transfer/pop.h"
#include "transfer/transfer_events.h"

namespace vorn {

/// Everything that moves mail: the one transfer control, the plan that starts it and the events
/// that answer it. The owner calls `Tick`.
class MailTraffic {
 public:
  MailTraffic(Context& context, PlanHost& host, StatusPanel& panel)
      : plan_(context, pop_, host), events_(context, plan_, pop_, panel) {
    pop_.SetEvents(&events_);
  }

  CheckPlan& Plan() { return plan_; }
  Pop& Control() { return pop_; }
  const TransferEvents& Events() const { return events_; }
  void Tick() { plan_.Tick(); }

 private:
  Pop pop_;
  CheckPlan plan_;
  TransferEvents events_;
};

}  // namespace vorn
