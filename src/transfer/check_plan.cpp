#include "transfer/check_plan.h"

#include <QDateTime>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <algorithm>
#include <vector>

#include "mail/outbox.h"
#include "objects/account.h"
#include "objects/file_age.h"
#include "objects/object_types.h"
#include "objects/profile.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/known_damage.h"
#include "storage/ui.h"
#include "transfer/pop.h"
#include "transfer/trusted_certificates.h"

namespace vorn {
namespace {

const QString kUnasked = QStringLiteral("unasked");  // of automatic checking
const QString kPeriodicSerial = QStringLiteral("maildefault");
const QString kPeriodicMode = QStringLiteral("maildowndefault");
const QString kReceiveMode = QStringLiteral("maildown");
const QString kSendMode = QStringLiteral("mailup");
const QString kLookMode = QStringLiteral("looklater");
const QString kProcess = QStringLiteral("process");
const QString kReceivingWork = QStringLiteral("receivework");
const QString kDayTime = QStringLiteral("daytime");
const QString kTimeFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz");
constexpr int kMillisecondsPerMinute = 60000;

QDateTime ReadTime(const QString& text) {
  return QDateTime::fromString(text, kTimeFormat);
}

// Whole minutes as a clock without seconds shows them.
qint64 MinuteBoundaries(const QDateTime& from, const QDateTime& to) {
  return to.toMSecsSinceEpoch() / kMillisecondsPerMinute -
         from.toMSecsSinceEpoch() / kMillisecondsPerMinute;
}

bool TellsOfNewMail(const Disk& settings) {
  return settings.Flag(u"MessageNotice") &&
         (settings.Flag(u"MessageNoticeDialog") || settings.Flag(u"MessageNoticeDesktop") ||
          (settings.Flag(u"MessageNoticeSound") && settings.Flag(u"MessageNoticeSoundAlone")));
}

}  // namespace

void CheckPlan::CreateMessagePlan(int flags, const QString& serial, DatabaseKind db,
                                  const QString& file) {
  if ((flags & kPlanPeriodic) != 0) RebuildPeriodicJob();
  if ((flags & kPlanReceive) != 0) {
    // Who asks for it now may be asked, also by what waits already.
    for (const DiskPtr& job : jobs_) {
      if (!runsPeriodically_) job->Let(kUnasked, false);
    }
    AddReceiveJob(
        *SelectObjects(context_.Objects, *context_.Session, object_type::kAccount, kSelectEnabled));
  }
  if ((flags & kPlanSend) != 0) {
    // Also where nothing else waits: what a death left has to be told.
    ReportDoubtful(Outbox(context_, MailDatabasePath(context_)).SettleLeftOver());
    if (!PlanWaiting(serial, db, file)) LookLater(serial, db, file);
  }
}

void CheckPlan::RebuildPeriodicJob() {
  jobs_.Remove(kPeriodicSerial);
  const DiskPtr settings = Settings(context_);
  if (!settings->Flag(u"MessageCheck")) return;
  auto job = std::make_shared<Disk>(kPeriodicSerial);
  job->Let(QStringLiteral("mode"), kPeriodicMode);
  job->Let(kDayTime, QString());
  job->Let(QStringLiteral("interval"), qMax(settings->Number(u"MessageCheckInterval", 1), 1));
  jobs_.Add(job);
}

void CheckPlan::AddReceiveJob(const DiskCollection& accounts) {
  auto waiting = std::make_shared<DiskCollection>();
  for (const DiskPtr& account : accounts) {
    const bool onlySends = account->Text(u"InMailServer").isEmpty();
    if (!onlySends && !WaitsToReceive(account->SerialID())) waiting->Add(account);
  }
  if (waiting->IsEmpty()) return;
  auto job =
      std::make_shared<Disk>(context_.Data.NewSerialID(QString::number(jobs_.Count()) + u'_'));
  job->Let(QStringLiteral("mode"), kReceiveMode);
  job->Let(kDayTime, QString());
  job->Let(kUnasked, runsPeriodically_ && Settings(context_)->Flag(u"Careful"));
  job->Set(QStringLiteral("account"), QVariant::fromValue(waiting));
  jobs_.Add(job);
}

// Where another program is at work for long, each check of a minute would add one more.
bool CheckPlan::WaitsToReceive(const QString& account) const {
  for (const DiskPtr& job : jobs_) {
    const DiskCollectionPtr accounts = job->Collection(u"account");
    if (job->Text(u"mode") != kReceiveMode || job->Flag(u"stop") || accounts->IsEmpty()) continue;
    const bool isBegun = job->Number(kProcess) != 0 && accounts->First()->SerialID() == account;
    if (accounts->Contains(account) && !isBegun) return true;
  }
  return false;
}

bool CheckPlan::HasWork() const {
  for (const DiskPtr& job : jobs_) {
    if (job->Text(u"mode") != kPeriodicMode) return true;
  }
  return false;
}

bool CheckPlan::IsSending() const {
  return std::any_of(jobs_.begin(), jobs_.end(), [](const DiskPtr& job) {
    return job->Text(u"mode") == kSendMode || job->Text(u"mode") == kLookMode;
  });
}

void CheckPlan::Tick() {
  if (ticking_) return RecordEnded();
  const QScopedValueRollback<bool> inside(ticking_, true);
  // Jobs added or removed on the way are seen at the next tick; none runs twice in one.
  const std::vector<DiskPtr> jobs(jobs_.begin(), jobs_.end());
  for (const DiskPtr& job : jobs) {
    if (jobs_.Contains(job->SerialID()) && IsDue(*job)) Advance(job);
  }
  ReleaseIdleWork();
}

void CheckPlan::Advance(const DiskPtr& job) {
  const QScopedValueRollback<QString> at(advancing_, job->SerialID());
  if (!job->Flag(u"delete")) Run(*job);
  if (job->Flag(u"update")) {
    Reschedule(*job);
  } else if (job->Flag(u"delete")) {
    jobs_.Remove(job->SerialID());
  }
}

// While a question is open, perhaps all night, nothing begins; but what has ended meanwhile is
// recorded, and other programs need not wait for it.
void CheckPlan::RecordEnded() {
  if (pop_.Busy()) return;
  const std::vector<DiskPtr> jobs(jobs_.begin(), jobs_.end());
  for (const DiskPtr& job : jobs) {
    const bool isReceiving = job->Text(u"mode") == kReceiveMode && job->Number(kProcess) != 0;
    if (job->SerialID() == advancing_ || !(isReceiving || IsSent(*job))) continue;
    Advance(job);
  }
  ReleaseIdleWork();
}

// Also one that has ended and is not recorded yet, while another job's goes on.
bool CheckPlan::HasSession(const Disk& job) const {
  if (job.Text(u"mode") == kReceiveMode) return job.Number(kProcess) != 0;
  return SendingHasSession(job);
}

// What a job has begun is kept, so that its end is recorded as any other.
void CheckPlan::Cancel() {
  const std::vector<DiskPtr> jobs(jobs_.begin(), jobs_.end());
  for (const DiskPtr& job : jobs) {
    if (job->Text(u"mode") == kPeriodicMode) continue;
    if (HasSession(*job)) {
      job->Let(QStringLiteral("stop"), true);
    } else {
      EndWait(*job);
      jobs_.Remove(job->SerialID());
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

void CheckPlan::EndWait(Disk& job) {
  if (job.Flag(u"held")) host_.WorkIsHeld(QString());
  job.Let(QStringLiteral("held"), false);
}

bool CheckPlan::TakeWork(const QString& work, Disk& job) {
  std::unique_ptr<WorkLock>& lock = works_[work];
  if (lock == nullptr) lock = std::make_unique<WorkLock>(context_, work);
  const bool wasHeld = lock->IsHeld();
  if (wasHeld || lock->Take()) {
    if (!wasHeld)
      std::ignore = CountWork(context_);  // without it an older copy passes unnoticed, no more
    EndWait(job);
    return true;
  }
  if (!job.Flag(u"held")) host_.WorkIsHeld(lock->HeldWords());
  job.Let(QStringLiteral("held"), true);
  return false;
}

// Between two messages another program may not begin; once nothing is left to send, it may.
void CheckPlan::ReleaseIdleWork() {
  if (!IsSending()) works_.erase(kSendingWork);
}

bool CheckPlan::IsDue(const Disk& job) const {
  const QString text = job.Text(kDayTime);
  return text.isEmpty() || MinuteBoundaries(ReadTime(text), ReadTime(context_.Data.Now())) >= 0;
}

void CheckPlan::Reschedule(Disk& job) const {
  const QDateTime next =
      ReadTime(context_.Data.Now()).addSecs(60 * static_cast<qint64>(job.Number(u"interval", 1)));
  job.Let(kDayTime, next.toString(kTimeFormat));
  job.Let(QStringLiteral("update"), false);
}

void CheckPlan::Run(Disk& job) {
  const QString mode = job.Text(u"mode");
  if (mode == kPeriodicMode) {
    const QScopedValueRollback periodic(runsPeriodically_, true);
    host_.SendAndReceive();
    job.Let(QStringLiteral("update"), true);
  } else if (mode == kReceiveMode) {
    ReceiveStep(job);
  } else if (mode == kSendMode) {
    SendStep(job);
  } else if (mode == kLookMode) {
    LookAgain(job);
  }
}

void CheckPlan::ReceiveStep(Disk& job) {
  if (pop_.Busy()) return;
  const DiskPtr account = job.Collection(u"account")->First();
  if (job.Number(kProcess) != 0) {
    FinishReceiving(job, account);
  } else if (MayReceive(job, *account) && TakeWork(ReceivingWork(*account), job)) {
    job.Let(kReceivingWork, ReceivingWork(*account));  // the user may change the account meanwhile
    StartReceiving(job, *account);
  }
}

// Asks for what is missing before the account is taken: others do not wait for an answer that may
// never come.
bool CheckPlan::MayReceive(Disk& job, Disk& account) {
  const QString damaged = FirstDamaged(context_, ProfileFiles(context_, *context_.Session));
  if (!damaged.isEmpty()) {
    const QString sentence =
        Ui::tr("「%1」が壊れているため、受信しません。").arg(QFileInfo(damaged).fileName());
    LeaveOutReceiving(job, sentence);
    // Whether or not the account's sessions are recorded.
    host_.AddEvent(1, 0, account.SerialID(), account.Text(u"Object"), QStringLiteral("account"),
                   sentence);
    return false;
  }
  // Nobody asked for automatic checking, and whoever is writing would type into the question.
  if (job.Flag(kUnasked) && !HasPassword(account)) {
    LeaveOutReceiving(job, Ui::tr("パスワードが分からないので、自動では受信しません。送受信を"
                                  "押すと入力できます。"));
    if (toldOfNoPassword_.contains(account.SerialID())) LeaveOutReceiving(job, {});
    toldOfNoPassword_.insert(account.SerialID());
    return false;
  }
  if (!KnowsPassword(account)) {
    LeaveOutReceiving(job, Ui::tr("パスワードが入力されなかったので、受信しませんでした。"));
    return false;
  }
  return jobs_.Contains(job.SerialID());  // not cancelled meanwhile
}

void CheckPlan::LoadReceiving(const Disk& account) {
  const bool apop = account.Number(u"InMailServerProtocol") == static_cast<int>(InProtocol::Apop);
  pop_.Server = account.Text(u"InMailServer");
  pop_.ServerPort = account.Number(u"InMailServerPort");
  pop_.User = account.Text(u"InMailServerUser");
  pop_.Password = account.Text(u"InMailServerPassword");
  pop_.Mode = apop ? kPopReceiveApop : kPopReceive;
  pop_.LoginOnly = false;
  pop_.Encryption = static_cast<Security>(account.Number(u"InMailServerSecurity"));
  pop_.TrustedFingerprints =
      TrustedCertificates(account.Text(u"InMailServerCertificates")).For(pop_.Server);
}

// Events come from the event loop only, so none of the new session's finds the old state.
void CheckPlan::StartSession(Disk& job) {
  pop_.Start();
  pop_.Tag = job.SerialID();
  job.Let(QStringLiteral("log"), QString());
  job.Let(QStringLiteral("error"), false);
  job.Let(QStringLiteral("loginrefused"), false);
}

bool CheckPlan::HasPassword(const Disk& account) {
  return account.Flag(u"InMailServerPasswordSave", true) ||
         !account.Text(u"InMailServerPassword").isEmpty();
}

bool CheckPlan::KnowsPassword(Disk& account) {
  if (HasPassword(account)) return true;
  account.Let(QStringLiteral("InMailServerPassword"), host_.AskPassword(account.Text(u"Object")));
  return HasPassword(account);
}

void CheckPlan::LeaveOutReceiving(Disk& job, const QString& sentence) {
  job.Let(QStringLiteral("log"), sentence);
  job.Let(QStringLiteral("error"), !sentence.isEmpty());
  job.Let(QStringLiteral("messages"), QString());
  job.Let(kProcess, 1);
}

void CheckPlan::StartReceiving(Disk& job, const Disk& account) {
  LoadReceiving(account);
  StartSession(job);
  job.Let(QStringLiteral("messages"), QString());
  job.Let(kProcess, 1);
}

void CheckPlan::RecordSession(const Disk& job, const Disk& account) {
  const bool isLeftOut = job.Flag(kUnasked) && job.Text(u"log").isEmpty() && !HasPassword(account);
  if (!account.Flag(u"EventLog") || isLeftOut) return;
  host_.AddEvent(job.Flag(u"error") ? 1 : 0, 0, account.SerialID(), account.Text(u"Object"),
                 QStringLiteral("account"), job.Text(u"log"));
}

// A password that the server refused and that is not stored was a slip of the keys, or is one by
// now.
void CheckPlan::ForgetRefusedPassword(const Disk& job, Disk& account) {
  if (job.Flag(u"loginrefused") && !account.Flag(u"InMailServerPasswordSave", true)) {
    account.Let(QStringLiteral("InMailServerPassword"), QString());
  }
}

void CheckPlan::FinishReceiving(Disk& job, const DiskPtr& account) {
  ForgetRefusedPassword(job, *account);
  works_.erase(job.Text(kReceivingWork));
  const DiskPtr settings = Settings(context_);
  const QString messages = job.Text(u"messages");
  if (!messages.isEmpty() && TellsOfNewMail(*settings)) {
    auto request = std::make_shared<Disk>(context_.Data.NewSerialID());
    request->Let(QStringLiteral("mode"), QStringLiteral("messagebox"));
    request->Let(QStringLiteral("status"), QStringLiteral("newmessage"));
    request->Let(QStringLiteral("message"), messages);
    host_.PostRequest(request);
  }
  RecordSession(job, *account);
  const DiskCollectionPtr accounts = job.Collection(u"account");
  accounts->Remove(account->SerialID());
  if (accounts->IsEmpty() || job.Flag(u"stop")) {
    job.Let(QStringLiteral("delete"), true);
  } else {
    job.Let(QStringLiteral("process"), 0);
  }
}

}  // namespace vorn
