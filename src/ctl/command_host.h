#pragma once

#include "transfer/mail_traffic.h"

namespace vorn::ctl {

/// The program around the check plan, without windows: session logs go to the error stream.
class CommandHost : public PlanHost, public StatusPanel {
 public:
  void PostRequest(const DiskPtr&) override {}
  void SendAndReceive() override {}
  QString AskPassword(const PasswordQuestion&) override { return {}; }
  SerialId ChooseAccount(const QString&, const QString&) override { return account; }
  void AddEvent(EventLevel level, EventMode mode, const SerialId& reference, const QString& title,
                const QString& category, const QString& text) override;
  void WorkIsHeld(const QString& sentence) override;
  void ShowStatus(const QString&, const QString&) override {}

  /// Failures that were told as events.
  int Failures() const { return failures_; }

  SerialId account;  ///< the serial identifier to answer with when an account is asked for

 private:
  int failures_ = 0;
};

/// Runs the plan to its end; the seconds that it took.
double RunPlan(MailTraffic& traffic);

}  // namespace vorn::ctl
