#pragma once

#include <QString>
#include <functional>
#include <utility>

#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/databases.h"
#include "transfer/plan/account_sessions.h"
#include "transfer/plan/check_job.h"
#include "transfer/plan/held_works.h"
#include "transfer/plan/plan_host.h"
#include "transfer/plan/planned_jobs.h"
#include "transfer/plan/receive_jobs.h"
#include "transfer/plan/send_jobs.h"

namespace vorn {

class Pop;

/// What `CreateMessagePlan` plans.
enum PlanFlag { kPlanReceive = 1, kPlanSend = 2, kPlanPeriodic = 4 };
Q_DECLARE_FLAGS(PlanFlags, PlanFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(PlanFlags)

/// Decides when mail is received and drives the transfer control through one session at a time.
/// Work is a list of jobs (`PlannedJobs`); a timer calls `Tick` every 100 milliseconds, and what a
/// job does in its steps is the matter of `ReceiveJobs` and `SendJobs`.
class CheckPlan {
 public:
  CheckPlan(Context& context, Pop& pop, PlanHost& host)
      : context_(context),
        pop_(pop),
        host_(host),
        jobs_(context),
        works_(context, host),
        sessions_(pop, host),
        receives_(context, pop, host, jobs_, works_, sessions_),
        sends_(context, pop, host, jobs_, works_, sessions_) {}

  /// Adds jobs: `kPlanPeriodic` rebuilds the periodic job from the settings, `kPlanReceive` adds a
  /// receive job over every enabled account, `kPlanSend` a send job for the messages that wait in
  /// the database `db` and `file` name; with `serial` only for that one.
  void CreateMessagePlan(PlanFlags flags, const SerialId& serial = {},
                         DatabaseKind db = DatabaseKind::Mail, const QString& file = {});
  /// Whether an account sends for the senders among the address lines, or the user chooses one for
  /// that message, which then counts until the program ends. False when he does not.
  bool ChooseSender(const SerialId& serial, const QString& addressLines, const QString& subject) {
    return sends_.Senders().Choose(serial, addressLines, subject);
  }
  /// The account that sends for a sender; null without one. Of several `preferred` sends from now
  /// on.
  DiskPtr SenderFor(const QString& addressLines, const SerialId& preferred) {
    sends_.Senders().Prefer(preferred);
    return sends_.Senders().AccountFor(addressLines);
  }
  /// Adds a receive job over these accounts, without those that wait to be received already; none
  /// when no account is left.
  void AddReceiveJob(const DiskCollection& accounts) { receives_.Add(accounts); }
  /// Advances every job that is due by one step.
  void Tick();

  DiskPtr Job(const SerialId& serialId) const { return jobs_.All().Find(serialId); }
  bool IsEmpty() const { return jobs_.All().IsEmpty(); }
  /// Whether there is anything to cancel: a job that runs or waits, other than automatic checking.
  bool HasWork() const { return jobs_.HasWork(); }
  /// Whether a message is being sent or planned to be.
  bool IsSending() const { return jobs_.IsSending(); }
  /// Ends the running session and whatever else was planned; automatic checking goes on. What the
  /// session came to is recorded by the next tick.
  void Cancel();
  /// Whether what is planned just now is planned by the periodic job, and was asked for by nobody.
  bool RunsPeriodically() const { return jobs_.RunsPeriodically(); }
  /// Lets a send job go on only when what came of its message is stored, for which the file is in
  /// use now: `store` is tried at each tick, and when it has not worked for long, `failed` is told.
  void StoreLater(const CheckJob& job, std::function<Result<>()> store,
                  std::function<void(const StorageError&)> failed) {
    sends_.Late().StoreLater(job, std::move(store), std::move(failed));
  }
  /// Begins the session of a send job's message again when it has ended, since its file is in use
  /// now. False when that has been so for long.
  bool HandOverLater(const CheckJob& job) { return sends_.Late().HandOverLater(job); }
  /// Forgets all jobs, for the end of the program.
  void Clear();

 private:
  void RebuildPeriodicJob();
  void Run(CheckJob& job);
  void Advance(CheckJob job);
  void RecordEnded();
  bool HasSession(const CheckJob& job) const;
  void ReleaseIdleWork();

  Context& context_;
  Pop& pop_;
  PlanHost& host_;
  PlannedJobs jobs_;
  HeldWorks works_;
  AccountSessions sessions_;
  ReceiveJobs receives_;
  SendJobs sends_;
  bool ticking_ = false;  // a question to the user runs the event loop, and with it the timer
  SerialId advancing_;    // the job whose step that is
};

}  // namespace vorn
