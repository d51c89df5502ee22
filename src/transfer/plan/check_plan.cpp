#include "transfer/plan/check_plan.h"

#include <QScopedValueRollback>
#include <vector>

#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "transfer/control/pop.h"
#include "transfer/plan/check_job.h"
#include "transfer/plan/plan_host.h"

namespace vorn {
namespace {

const SerialId kPeriodicSerial(QStringLiteral("maildefault"));

}  // namespace

void CheckPlan::CreateMessagePlan(PlanFlags flags, const SerialId& serial, DatabaseKind db,
                                  const QString& file) {
  if (flags.testFlag(kPlanPeriodic)) RebuildPeriodicJob();
  if (flags.testFlag(kPlanReceive)) {
    // Who asks for it now may be asked, also by what waits already.
    for (CheckJob job : jobs_.All()) {
      if (!jobs_.RunsPeriodically()) job.BeAsked();
    }
    receives_.Add(
        *SelectObjects(context_.Objects, *context_.Session, object_type::kAccount, kSelectEnabled));
  }
  if (flags.testFlag(kPlanSend)) {
    sends_.Plan({serial, db, file, flags.testFlag(kPlanReceive)});
  }
}

void CheckPlan::RebuildPeriodicJob() {
  jobs_.Remove(kPeriodicSerial);
  const int minutes = Settings(context_).CheckMinutes();
  if (minutes > 0) jobs_.Add(CheckJob::Periodic(kPeriodicSerial, minutes));
}

void CheckPlan::Tick() {
  if (ticking_) return RecordEnded();
  const QScopedValueRollback<bool> inside(ticking_, true);
  // Jobs added or removed on the way are seen at the next tick; none runs twice in one.
  const std::vector<DiskPtr> jobs(jobs_.All().begin(), jobs_.All().end());
  for (const CheckJob job : jobs) {
    if (jobs_.Contains(job.Serial()) && job.IsDue(context_.Data.Now())) Advance(job);
  }
  ReleaseIdleWork();
}

void CheckPlan::Advance(CheckJob job) {
  const QScopedValueRollback<SerialId> at(advancing_, job.Serial());
  if (!job.HasEnded()) Run(job);
  if (job.RunsAgain()) {
    job.Reschedule(context_.Data.Now());
  } else if (job.HasEnded()) {
    jobs_.Remove(job.Serial());
  }
}

// While a question is open, perhaps all night, nothing begins; but what has ended meanwhile is
// recorded, and other programs need not wait for it.
void CheckPlan::RecordEnded() {
  if (pop_.Busy()) return;
  const std::vector<DiskPtr> jobs(jobs_.All().begin(), jobs_.All().end());
  for (const CheckJob job : jobs) {
    const bool isReceiving = job.Is(CheckJob::Mode::Receive) && job.Step() == JobStep::Begun;
    const bool isSent = job.Step() == JobStep::Sent;
    if (job.Serial() != advancing_ && (isReceiving || isSent)) Advance(job);
  }
  ReleaseIdleWork();
}

// Also one that has ended and is not recorded yet, while another job's goes on.
bool CheckPlan::HasSession(const CheckJob& job) const {
  if (job.Is(CheckJob::Mode::Receive)) return job.Step() == JobStep::Begun;
  return sends_.HasSession(job);
}

// What a job has begun is kept, so that its end is recorded as any other.
void CheckPlan::Cancel() {
  const std::vector<DiskPtr> jobs(jobs_.All().begin(), jobs_.All().end());
  for (CheckJob job : jobs) {
    if (job.Is(CheckJob::Mode::Periodic)) continue;
    if (HasSession(job)) {
      job.Stop();
    } else {
      works_.EndWait(job);
      jobs_.Remove(job.Serial());
    }
  }
  pop_.Cancel();
}

// Between two messages another program may not begin; once nothing is left to send, it may.
void CheckPlan::ReleaseIdleWork() {
  if (!jobs_.IsSending()) works_.Release(kSendingWork);
}

void CheckPlan::Run(CheckJob& job) {
  using Mode = CheckJob::Mode;
  if (job.Is(Mode::Periodic)) {
    const auto periodic = jobs_.Periodically(true);
    host_.SendAndReceive();
    job.RunAgain();
  } else if (job.Is(Mode::Receive)) {
    receives_.Step(job);
  } else if (job.Is(Mode::Send)) {
    sends_.Step(job);
  } else if (job.Is(Mode::Look)) {
    sends_.LookAgain(job);
  }
}

void CheckPlan::Clear() {
  jobs_.Clear();
  works_.Clear();
  sends_.Late().Clear();
}

}  // namespace vorn
