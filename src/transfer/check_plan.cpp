#include "transfer/check_plan.h"

#include <QDateTime>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <algorithm>
#include <vector>

#include "mail/outbox.h"
#include "objects/account.h"
#include "objects/file_age.h"
#include "objects/notice_settings.h"
#include "objects/object_types.h"
#include "objects/profile.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "objects/window_request.h"
#include "storage/databases.h"
#include "storage/known_damage.h"
#include "storage/ui.h"
#include "transfer/check_job.h"
#include "transfer/pop.h"
#include "transfer/session_record.h"
#include "transfer/trusted_certificates.h"

namespace vorn {
namespace {

const QString kPeriodicSerial = QStringLiteral("maildefault");

}  // namespace

void CheckPlan::CreateMessagePlan(int flags, const QString& serial, DatabaseKind db,
                                  const QString& file) {
  if ((flags & kPlanPeriodic) != 0) RebuildPeriodicJob();
  if ((flags & kPlanReceive) != 0) {
    // Who asks for it now may be asked, also by what waits already.
    for (CheckJob job : jobs_) {
      if (!runsPeriodically_) job.BeAsked();
    }
    AddReceiveJob(
        *SelectObjects(context_.Objects, *context_.Session, object_type::kAccount, kSelectEnabled));
  }
  if ((flags & kPlanSend) != 0) {
    // Also where nothing else waits: what a death left has to be told.
    ReportDoubtful(Outbox(context_, MailDatabasePath(context_)).SettleLeftOver());
    const WaitingSearch search{serial, db, file, (flags & kPlanReceive) != 0};
    if (!PlanWaiting(search)) LookLater(search);
  }
}

void CheckPlan::RebuildPeriodicJob() {
  jobs_.Remove(kPeriodicSerial);
  const int minutes = Settings(context_).CheckMinutes();
  if (minutes > 0) jobs_.Add(CheckJob::Periodic(kPeriodicSerial, minutes).Bag());
}

void CheckPlan::AddReceiveJob(const DiskCollection& accounts) {
  auto waiting = std::make_shared<DiskCollection>();
  for (const DiskPtr& account : accounts) {
    const bool onlySends = Account(account).OnlySends();
    if (!onlySends && !WaitsToReceive(account->SerialID())) waiting->Add(account);
  }
  if (waiting->IsEmpty()) return;
  const bool isUnasked = runsPeriodically_ && Settings(context_).IsCareful();
  jobs_.Add(CheckJob::Receive(NewJobSerial(), waiting, isUnasked).Bag());
}

QString CheckPlan::NewJobSerial() const {
  return context_.Data.NewSerialID(QString::number(jobs_.Count()) + u'_');
}

// Where another program is at work for long, each check of a minute would add one more.
bool CheckPlan::WaitsToReceive(const QString& account) const {
  for (const CheckJob job : jobs_) {
    const DiskCollectionPtr accounts = job.Accounts();
    if (!job.Is(CheckJob::Mode::Receive) || job.IsStopped() || accounts->IsEmpty()) continue;
    const bool isBegun = job.Step() == JobStep::Begun && accounts->First()->SerialID() == account;
    if (accounts->Contains(account) && !isBegun) return true;
  }
  return false;
}

bool CheckPlan::HasWork() const {
  return std::any_of(jobs_.begin(), jobs_.end(),
                     [](const CheckJob& job) { return !job.Is(CheckJob::Mode::Periodic); });
}

bool CheckPlan::IsSending() const {
  return std::any_of(jobs_.begin(), jobs_.end(), [](const CheckJob& job) {
    return job.Is(CheckJob::Mode::Send) || job.Is(CheckJob::Mode::Look);
  });
}

void CheckPlan::Tick() {
  if (ticking_) return RecordEnded();
  const QScopedValueRollback<bool> inside(ticking_, true);
  // Jobs added or removed on the way are seen at the next tick; none runs twice in one.
  const std::vector<DiskPtr> jobs(jobs_.begin(), jobs_.end());
  for (const CheckJob job : jobs) {
    if (jobs_.Contains(job.SerialId()) && job.IsDue(context_.Data.Now())) Advance(job);
  }
  ReleaseIdleWork();
}

void CheckPlan::Advance(CheckJob job) {
  const QScopedValueRollback<QString> at(advancing_, job.SerialId());
  if (!job.HasEnded()) Run(job);
  if (job.RunsAgain()) {
    job.Reschedule(context_.Data.Now());
  } else if (job.HasEnded()) {
    jobs_.Remove(job.SerialId());
  }
}

// While a question is open, perhaps all night, nothing begins; but what has ended meanwhile is
// recorded, and other programs need not wait for it.
void CheckPlan::RecordEnded() {
  if (pop_.Busy()) return;
  const std::vector<DiskPtr> jobs(jobs_.begin(), jobs_.end());
  for (const CheckJob job : jobs) {
    const bool isReceiving = job.Is(CheckJob::Mode::Receive) && job.Step() == JobStep::Begun;
    const bool isSent = job.Step() == JobStep::Sent;
    if (job.SerialId() != advancing_ && (isReceiving || isSent)) Advance(job);
  }
  ReleaseIdleWork();
}

// Also one that has ended and is not recorded yet, while another job's goes on.
bool CheckPlan::HasSession(const CheckJob& job) const {
  if (job.Is(CheckJob::Mode::Receive)) return job.Step() == JobStep::Begun;
  return SendingHasSession(job);
}

// What a job has begun is kept, so that its end is recorded as any other.
void CheckPlan::Cancel() {
  const std::vector<DiskPtr> jobs(jobs_.begin(), jobs_.end());
  for (CheckJob job : jobs) {
    if (job.Is(CheckJob::Mode::Periodic)) continue;
    if (HasSession(job)) {
      job.Stop();
    } else {
      EndWait(job);
      jobs_.Remove(job.SerialId());
    }
  }
  pop_.Cancel();
}

void CheckPlan::Clear() {
  while (!jobs_.IsEmpty()) jobs_.Remove(DiskPtr(jobs_.First())->SerialID());
  works_.clear();
  unstored_.clear();
  handovers_.clear();
}

void CheckPlan::EndWait(CheckJob& job) {
  if (job.SetHeld(false)) host_.WorkIsHeld(QString());
}

bool CheckPlan::TakeWork(const QString& work, CheckJob& job) {
  std::unique_ptr<WorkLock>& lock = works_[work];
  if (lock == nullptr) lock = std::make_unique<WorkLock>(context_, work);
  const bool wasHeld = lock->IsHeld();
  if (wasHeld || lock->Take()) {
    if (!wasHeld)
      std::ignore = CountWork(context_);  // without it an older copy passes unnoticed, no more
    EndWait(job);
    return true;
  }
  if (job.SetHeld(true)) host_.WorkIsHeld(lock->HeldWords());
  return false;
}

// Between two messages another program may not begin; once nothing is left to send, it may.
void CheckPlan::ReleaseIdleWork() {
  if (!IsSending()) works_.erase(kSendingWork);
}

void CheckPlan::Run(CheckJob& job) {
  using Mode = CheckJob::Mode;
  if (job.Is(Mode::Periodic)) {
    const QScopedValueRollback periodic(runsPeriodically_, true);
    host_.SendAndReceive();
    job.RunAgain();
  } else if (job.Is(Mode::Receive)) {
    ReceiveStep(job);
  } else if (job.Is(Mode::Send)) {
    SendStep(job);
  } else if (job.Is(Mode::Look)) {
    LookAgain(job);
  }
}

void CheckPlan::ReceiveStep(CheckJob& job) {
  if (pop_.Busy()) return;
  Account account = job.Accounts()->First();
  if (job.Step() == JobStep::Begun) {
    FinishReceiving(job, account);
  } else if (MayReceive(job, account) && TakeWork(account.Work(), job)) {
    SessionRecord(job.Bag()).SetWork(account.Work());
    StartReceiving(job, account);
  }
}

// Asks for what is missing before the account is taken: others do not wait for an answer that may
// never come.
bool CheckPlan::MayReceive(CheckJob& job, Account& account) {
  const QString damaged = FirstDamaged(context_, ProfileFiles(context_, *context_.Session));
  if (!damaged.isEmpty()) {
    const QString sentence =
        Ui::tr("「%1」が壊れているため、受信しません。").arg(QFileInfo(damaged).fileName());
    LeaveOutReceiving(job, sentence);
    // Whether or not the account's sessions are recorded.
    host_.AddEvent(1, 0, account.SerialId(), account.Name(), QStringLiteral("account"), sentence);
    return false;
  }
  // Nobody asked for automatic checking, and whoever is writing would type into the question.
  if (job.IsUnasked() && !account.HasPassword()) {
    LeaveOutReceiving(job, Ui::tr("パスワードが分からないので、自動では受信しません。送受信を"
                                  "押すと入力できます。"));
    if (toldOfNoPassword_.contains(account.SerialId())) LeaveOutReceiving(job, {});
    toldOfNoPassword_.insert(account.SerialId());
    return false;
  }
  if (!KnowsPassword(account)) {
    LeaveOutReceiving(job, Ui::tr("パスワードが入力されなかったので、受信しませんでした。"));
    return false;
  }
  return jobs_.Contains(job.SerialId());  // not cancelled meanwhile
}

void CheckPlan::LoadServer(const AccountServer& server) {
  pop_.Server = server.host;
  pop_.ServerPort = server.port;
  pop_.User = server.user;
  pop_.Password = server.password;
  pop_.Encryption = static_cast<Security>(server.security);
  pop_.TrustedFingerprints = TrustedCertificates(server.certificates).For(server.host);
}

void CheckPlan::LoadReceiving(const Account& account) {
  LoadServer(account.Incoming());
  pop_.Mode = account.Protocol() == InProtocol::Apop ? kPopReceiveApop : kPopReceive;
  pop_.LoginOnly = false;
}

bool CheckPlan::KnowsPassword(Account& account) {
  if (account.HasPassword()) return true;
  account.SetPassword(host_.AskPassword(account.Name()));
  return account.HasPassword();
}

void CheckPlan::LeaveOutReceiving(CheckJob& job, const QString& sentence) {
  SessionRecord record(job.Bag());
  record.Begin();
  if (!sentence.isEmpty()) record.AddError(sentence);
  job.SetStep(JobStep::Begun);
}

// Events come from the event loop only, so none of the new session's finds the old state.
void CheckPlan::StartReceiving(CheckJob& job, const Account& account) {
  LoadReceiving(account);
  pop_.Start();
  pop_.Tag = job.SerialId();
  SessionRecord(job.Bag()).Begin();
  job.SetStep(JobStep::Begun);
}

void CheckPlan::RecordSession(const CheckJob& job, const Account& account) {
  const SessionRecord record(job.Bag());
  const bool isLeftOut = job.IsUnasked() && record.Log().isEmpty() && !account.HasPassword();
  if (!account.LogsEvents() || isLeftOut) return;
  host_.AddEvent(record.HasError() ? 1 : 0, 0, account.SerialId(), account.Name(),
                 QStringLiteral("account"), record.Log());
}

// A password that the server refused and that is not stored was a slip of the keys, or is one by
// now.
void CheckPlan::ForgetRefusedPassword(const CheckJob& job, Account& account) {
  if (SessionRecord(job.Bag()).IsLoginRefused() && !account.SavesPassword()) {
    account.SetPassword(QString());
  }
}

void CheckPlan::FinishReceiving(CheckJob& job, Account& account) {
  ForgetRefusedPassword(job, account);
  const SessionRecord record(job.Bag());
  works_.erase(record.Work());
  const QString messages = record.Received();
  if (!messages.isEmpty() && NoticeSettings(context_).IsWanted()) {
    host_.PostRequest(WindowRequest::NewMessages(context_.Data.NewSerialID(), messages));
  }
  RecordSession(job, account);
  const DiskCollectionPtr accounts = job.Accounts();
  accounts->Remove(account.SerialId());
  if (accounts->IsEmpty() || job.IsStopped()) {
    job.End();
  } else {
    job.SetStep(JobStep::Waits);
  }
}

}  // namespace vorn
