#include "transfer/plan/receive_jobs.h"

#include <QFileInfo>
#include <memory>

#include "objects/account.h"
#include "objects/notice_settings.h"
#include "objects/profile/profile.h"
#include "objects/settings.h"
#include "objects/window_request.h"
#include "storage/known_damage.h"
#include "storage/ui.h"
#include "transfer/control/pop.h"
#include "transfer/plan/account_sessions.h"
#include "transfer/plan/check_job.h"
#include "transfer/plan/held_works.h"
#include "transfer/plan/plan_host.h"
#include "transfer/plan/planned_jobs.h"
#include "transfer/plan/session_record.h"

namespace vorn {

void ReceiveJobs::Add(const DiskCollection& accounts) {
  auto waiting = std::make_shared<DiskCollection>();
  for (const DiskPtr& account : accounts) {
    const bool onlySends = Account(account).OnlySends();
    if (!onlySends && !WaitsToReceive(account->Serial())) waiting->Add(account);
  }
  if (waiting->IsEmpty()) return;
  const bool isUnasked = jobs_.RunsPeriodically() && Settings(context_).Care().asksNothingAlone;
  jobs_.Add(CheckJob::Receive(jobs_.NewSerial(), waiting, isUnasked));
}

// Where another program is at work for long, each check of a minute would add one more.
bool ReceiveJobs::WaitsToReceive(const SerialId& account) const {
  for (const CheckJob job : jobs_.All()) {
    const DiskCollectionPtr accounts = job.Accounts();
    if (!job.Is(CheckJob::Mode::Receive) || job.IsStopped() || accounts->IsEmpty()) continue;
    const bool isBegun = job.Step() == JobStep::Begun && accounts->First()->Serial() == account;
    if (accounts->Contains(account) && !isBegun) return true;
  }
  return false;
}

void ReceiveJobs::Step(CheckJob& job) {
  if (pop_.Busy()) return;
  Account account = job.Accounts()->First();
  if (job.Step() == JobStep::Begun) {
    Finish(job, account);
  } else if (MayReceive(job, account) && works_.Take(account.Work(), job)) {
    SessionRecord(job.Bag()).SetWork(account.Work());
    Start(job, account);
  }
}

// Asks for what is missing before the account is taken: others do not wait for an answer that may
// never come.
bool ReceiveJobs::MayReceive(CheckJob& job, Account& account) {
  const QString damaged = FirstDamaged(context_, ProfileFiles(context_, *context_.Session));
  if (!damaged.isEmpty()) {
    const QString sentence =
        Ui::tr("「%1」が壊れているため、受信しません。").arg(QFileInfo(damaged).fileName());
    LeaveOut(job, sentence);
    // Whether or not the account's sessions are recorded.
    host_.AddEvent(kEventError, kEventObject, account.Serial(), account.Name(),
                   QStringLiteral("account"), sentence);
    return false;
  }
  // Nobody asked for automatic checking, and whoever is writing would type into the question.
  if (job.IsUnasked() && !account.HasCredentials()) {
    LeaveOut(job, Ui::tr("パスワードが分からないので、自動では受信しません。送受信を"
                         "押すと入力できます。"));
    if (toldOfNoPassword_.contains(account.Serial())) LeaveOut(job, {});
    toldOfNoPassword_.insert(account.Serial());
    return false;
  }
  if (!sessions_.KnowsPassword(account, false)) {
    LeaveOut(job, Ui::tr("パスワードが入力されなかったので、受信しませんでした。"));
    return false;
  }
  return jobs_.Contains(job.Serial());  // not cancelled meanwhile
}

void ReceiveJobs::LeaveOut(CheckJob& job, const QString& sentence) {
  SessionRecord record(job.Bag());
  record.Begin();
  if (!sentence.isEmpty()) record.AddError(sentence);
  job.SetStep(JobStep::Begun);
}

// Events come from the event loop only, so none of the new session's finds the old state.
void ReceiveJobs::Start(CheckJob& job, const Account& account) {
  sessions_.LoadReceiving(account);
  pop_.Start();
  pop_.Tag = job.Serial().Text();
  SessionRecord(job.Bag()).Begin();
  job.SetStep(JobStep::Begun);
}

void ReceiveJobs::Finish(CheckJob& job, Account& account) {
  sessions_.ForgetRefusedPassword(job, account);
  const SessionRecord record(job.Bag());
  works_.Release(record.Work());
  const SerialIds messages = record.Received();
  if (!messages.isEmpty() && NoticeSettings(context_).IsWanted()) {
    host_.PostRequest(WindowRequest::NewMessages(context_.Data.NewSerialID(), messages));
  }
  sessions_.Record(job, account);
  const DiskCollectionPtr accounts = job.Accounts();
  accounts->Remove(account.Serial());
  if (accounts->IsEmpty() || job.IsStopped()) {
    job.End();
  } else {
    job.SetStep(JobStep::Waits);
  }
}

}  // namespace vorn
