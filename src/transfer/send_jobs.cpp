// The sending half of the check plan: which messages wait, with which account each goes, and the
// steps of a send job.

#include <QFileInfo>
#include <QScopedValueRollback>
#include <tuple>
#include <utility>

#include "mail/codec/address.h"
#include "mail/message_rows.h"
#include "mail/outbox.h"
#include "mail/send_refusals.h"
#include "objects/account.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/known_damage.h"
#include "storage/profile_bag.h"
#include "storage/session_result.h"
#include "storage/ui.h"
#include "transfer/check_job.h"
#include "transfer/check_plan.h"
#include "transfer/outgoing_source.h"
#include "transfer/pop.h"
#include "transfer/send_item.h"
#include "transfer/session_record.h"
#include "transfer/trusted_certificates.h"

namespace vorn {
namespace {

// For how long it is tried to store what came of a message.
constexpr int kStoreAgainMs = 120000;

// How an account sends. Whoever changes that expects another answer.
QString RouteOf(const std::optional<Account>& account) {
  if (!account) return {};
  const AccountServer server = account->Outgoing();
  return QStringList{server.host, QString::number(server.port),
                     account->Authenticates() ? server.user : QString(), account->Address()}
      .join(u' ');
}

}  // namespace

// The enabled account that bears a sender's address; of several the one that bears his name too,
// then the default one.
DiskPtr CheckPlan::AccountFor(const QString& addressLines) const {
  const DiskCollectionPtr accounts =
      SelectObjects(context_.Objects, *context_.Session, object_type::kAccount, kSelectEnabled);
  DiskPtr taken;
  int best = -1;
  for (const QString& line : addressLines.split(kLineBreak)) {
    const AddressEntry entry = ParseAddressEntry(line);
    if (entry.kind.compare(u"from", Qt::CaseInsensitive) != 0) continue;
    for (const DiskPtr& object : *accounts) {
      const Account account(object);
      if (account.Address() != entry.address) continue;
      const int fits =
          (account.Display() == entry.displayName ? 2 : 0) + (account.IsDefault() ? 1 : 0);
      if (fits <= best) continue;
      best = fits;
      taken = object;
    }
  }
  return taken;
}

// In a broken file what was sent may seem to wait.
bool CheckPlan::MaySendFrom(const QString& file) {
  const QString path = PlatformPath(context_, file);
  if (!IsKnownBroken(context_, path)) return true;
  host_.AddEvent(1, 0, QString(), Ui::tr("システム"), QStringLiteral("mailup"),
                 Ui::tr("「%1」が壊れているため、送信しません。").arg(QFileInfo(path).fileName()));
  return false;
}

bool CheckPlan::IsPlanned(const QString& serial) const {
  for (const CheckJob job : jobs_) {
    const DiskCollectionPtr messages = job.Messages();
    if (messages != nullptr && messages->Contains(serial)) return true;
  }
  return false;
}

Result<> CheckPlan::PlanWaiting(const WaitingSearch& search) {
  std::vector<SendItem> messages;
  const Result<> found = FindWaiting(search, messages);
  if (!found) return found;
  if (search.isCheck && Settings(context_).IsCareful()) LeaveOutRefused(messages);
  if (messages.empty() || MaySendFrom(messages.front().File(context_))) AddSendJob(messages);
  return {};
}

// What a server has refused for good would be refused at each check, until somebody mends the
// message or the account, or sends it again.
void CheckPlan::LeaveOutRefused(std::vector<SendItem>& messages) {
  if (messages.empty()) return;
  const auto routes = SendRefusals(context_, messages.front().File(context_)).Routes();
  const auto count = std::erase_if(messages, [&routes](const SendItem& message) {
    const auto refused = routes.find(message.SerialId());
    return refused != routes.end() && refused.value() == RouteOf(message.Sender());
  });
  if (count == 0 || runsPeriodically_) return;
  host_.AddEvent(1, 0, QString(), Ui::tr("システム"), QStringLiteral("mailup"),
                 Ui::tr("サーバーに断られたメッセージが%1通あり、送信しませんでした。開いて直すか、"
                        "もう一度送信してください。")
                     .arg(count));
}

// Whoever pressed the button of a message does not press it again because a file was in use.
void CheckPlan::LookLater(const WaitingSearch& search) {
  const CheckJob job = CheckJob::Look(NewJobSerial(), runsPeriodically_);
  jobs_.Add(job.Bag());
  const auto look = [this, search] { return PlanWaiting(search); };
  StoreLater(job, look, [this](const StorageError& reason) { TellUnread(reason); });
}

void CheckPlan::LookAgain(CheckJob& job) {
  const QScopedValueRollback periodic(runsPeriodically_, job.IsPeriodic());
  if (OutcomeIsStored(job)) job.End();
}

void CheckPlan::TellUnread(const StorageError& reason) {
  host_.AddEvent(1, 0, QString(), Ui::tr("システム"), QStringLiteral("mailup"),
                 Ui::tr("送信待ちのメッセージを読み込めません。") + reason.text);
}

// Doubtful messages wait for the user's word, those that are planned for their turn.
Result<> CheckPlan::FindWaiting(const WaitingSearch& search, std::vector<SendItem>& messages) {
  StorageError reason;
  {
    const OpenedDatabase opened(context_, search.db, search.file);
    if (!opened && opened.Error().kind != StorageError::Kind::Busy) return {};
    if (!opened) return opened.Error();
    const QString file = search.file.isEmpty() ? MailDatabasePath(context_) : search.file;
    const RecordsetPtr rows = MessageRows(context_.Data).WaitingUntried(search.serial);
    for (; rows != nullptr && !rows->Eof(); rows->MoveNext()) {
      if (IsPlanned(rows->SerialID())) continue;
      const QString lines = rows->Fields(u"FIELD_MAILADDRESS").toString();
      SendItem message(rows->SerialID(), file, ProfileBag(*context_.Session).Password(), lines,
                       rows->Fields(u"FIELD_SUBJECT").toString());
      message.SetSender(AccountFor(lines));
      messages.push_back(message);
    }
    if (rows != nullptr && !rows->Failed()) return {};
    reason = ReasonOf(context_.Data);
  }
  if (reason.kind == StorageError::Kind::Busy) return reason;
  TellUnread(reason);
  return {};
}

bool CheckPlan::ChooseSender(const QString& serial, const QString& addressLines,
                             const QString& subject) {
  if (AccountFor(addressLines) != nullptr) return true;
  const DiskPtr chosen = AskForAccount(subject);
  if (chosen != nullptr) chosen_[serial] = chosen->SerialID();
  return chosen != nullptr;
}

// Which message it is about, since it may have been waiting for long.
DiskPtr CheckPlan::AskForAccount(const QString& subject) {
  const QScopedValueRollback asking(asking_, true);
  return context_.Objects.Find(host_.ChooseAccount(
      Ui::tr("アカウントの選択"), Ui::tr("送信する際のアカウントを選択して下さい。") +
                                      QStringLiteral("\n") + Ui::tr("件名: ") + subject));
}

bool CheckPlan::UseChosenAccount(SendItem& message, DiskPtr& chosen, bool& asked) {
  DiskPtr account = context_.Objects.Find(chosen_.value(message.SerialId()));
  // Nobody asked for automatic checking, and two questions at once could not be told apart.
  const bool mayAsk = !asking_ && !(runsPeriodically_ && Settings(context_).IsCareful());
  if (account == nullptr && !asked && mayAsk) {
    asked = true;
    chosen = AskForAccount(message.Subject());
  }
  if (account == nullptr) account = chosen;
  if (account == nullptr) {
    const bool isTold = !mayAsk && toldOfNoAccount_.contains(message.SerialId());
    toldOfNoAccount_.insert(message.SerialId());
    if (!isTold) {
      host_.AddEvent(1, 1, message.SerialId(), Ui::tr("システム"), QStringLiteral("mailup"),
                     Ui::tr("送信で使用するアカウントが不明です。"));
    }
    return false;
  }
  message.SendFrom(account);
  return true;
}

void CheckPlan::AddSendJob(std::vector<SendItem>& messages) {
  auto waiting = std::make_shared<DiskCollection>();
  DiskPtr chosen;
  bool asked = false;
  for (SendItem& message : messages) {
    message.FillEnvelope();
    if (message.Sender() || UseChosenAccount(message, chosen, asked)) waiting->Add(message.Bag());
  }
  if (waiting->IsEmpty()) return;
  jobs_.Add(CheckJob::Send(NewJobSerial(), waiting).Bag());
}

void CheckPlan::SendStep(CheckJob& job) {
  if (pop_.Busy()) return;
  SendItem message = job.Messages()->First();
  if (job.IsStopped() && job.Step() != JobStep::Sent) {
    FinishSending(job, message);
    return;
  }
  switch (job.Step()) {
    case JobStep::Waits:
      if (MaySend(job, message) && TakeSending(job, message)) BeginSending(job, *message.Sender());
      break;
    case JobStep::Begun:
      StartSending(job, message);
      break;
    case JobStep::Sent:
      if (OutcomeIsStored(job)) FinishSending(job, message);
  }
}

void CheckPlan::StoreLater(const CheckJob& job, std::function<Result<>()> store,
                           std::function<void(const StorageError&)> failed) {
  unstored_[job.SerialId()] = {std::move(store), std::move(failed), QDeadlineTimer(kStoreAgainMs)};
}

bool CheckPlan::HandOverLater(const CheckJob& job) {
  const auto [limit, isFirst] = handovers_.try_emplace(job.SerialId(), kStoreAgainMs);
  if (limit->second.hasExpired()) return false;
  SessionRecord(job.Bag()).SetAgain(true);
  return true;
}

bool CheckPlan::OutcomeIsStored(const CheckJob& job) {
  const auto found = unstored_.find(job.SerialId());
  if (found == unstored_.end()) return true;
  const Unstored unstored = found->second;  // a question on the way may end all that is planned
  if (const Result<> stored = unstored.store(); !stored) {
    if (!unstored.limit.hasExpired()) return false;
    unstored.failed(stored.Error());
  }
  unstored_.erase(job.SerialId());
  return true;
}

// Before the message's own session there may be one that only logs in.
bool CheckPlan::SendingHasSession(const CheckJob& job) const {
  return job.Step() == JobStep::Sent ||
         (job.Step() == JobStep::Begun && pop_.Tag == job.SerialId());
}

// Asks for a missing password, once for each account, while others may send.
bool CheckPlan::MaySend(const CheckJob& job, const SendItem& message) {
  Account account = *message.Sender();
  SessionRecord record(job.Bag());
  if (!account.IsPopBeforeSmtp() || account.HasPassword() || record.Asked() == account.SerialId()) {
    return true;
  }
  works_.erase(kSendingWork);
  record.SetAsked(account.SerialId());
  KnowsPassword(account);
  return jobs_.Contains(job.SerialId());  // not cancelled meanwhile
}

// One program sends at a time. Whatever stands as under way when it begins was left by a death.
bool CheckPlan::TakeSending(CheckJob& job, const SendItem& message) {
  const auto held = works_.find(kSendingWork);
  const bool goesOn = held != works_.end() && held->second->IsHeld();
  if (!TakeWork(kSendingWork, job)) return false;
  if (!goesOn) ReportDoubtful(Outbox(context_, message.File(context_)).DoubtLeftOver());
  return true;
}

void CheckPlan::ReportDoubtful(int count) {
  if (count == 0) return;
  host_.AddEvent(
      1, 0, QString(), Ui::tr("システム"), QStringLiteral("mailup"),
      Ui::tr("送信の途中で終了したため、届いたかどうか分からないメッセージが%1通あります。"
             "開いて、もう一度送信するか、送信済みにするかを選んでください。")
          .arg(count));
}

// "POP before SMTP" first logs in at the incoming server.
void CheckPlan::BeginSending(CheckJob& job, const Account& account) {
  if (account.IsPopBeforeSmtp() && account.HasPassword()) {
    LoadReceiving(account);
    pop_.LoginOnly = true;
    pop_.Tag = job.SerialId();
    pop_.Start();
  }
  SessionRecord(job.Bag()).Begin();
  job.SetStep(JobStep::Begun);
}

// Sends what the row holds now. A message that was stored anew since it was planned is planned
// anew, with the addresses that it has by now.
void CheckPlan::StartSending(CheckJob& job, SendItem& message) {
  Account account = *message.Sender();
  ForgetRefusedPassword(job, account);
  SessionRecord record(job.Bag());
  if (record.IsLoginRefused()) record.SetAsked(QString());
  WaitingMessage waiting;
  const QString serial = message.SerialId();
  const auto reading = Outbox(context_, message.File(context_)).Read(serial, waiting);
  if (!reading) {
    host_.AddEvent(
        1, 1, serial, Ui::tr("システム"), QStringLiteral("mailup"),
        Ui::tr("メッセージ「%1」を読み込めないので、送信しませんでした。").arg(message.Subject()) +
            reading.Error().text);
    LeaveOut(job, message);
    return;
  }
  if (*reading == Outbox::Reading::Closed) return;  // tried again at the next tick
  if (*reading == Outbox::Reading::Gone) {
    LeaveOut(job, message);
    return;
  }
  if (waiting.addressLines != message.AddressLines()) {
    LeaveOut(job, message);
    PlanAnew(message);
    return;
  }
  LoadSending(message, waiting);
  // A receive job may have had a session since this one began.
  pop_.Tag = job.SerialId();
  pop_.Start();
  job.SetStep(JobStep::Sent);
}

void CheckPlan::PlanAnew(const SendItem& message) {
  CreateMessagePlan(kPlanSend, message.SerialId(), DatabaseKind::MailByPath,
                    message.File(context_));
}

void CheckPlan::LoadSending(SendItem& message, const WaitingMessage& waiting) {
  message.Take(waiting);
  const Account account = *message.Sender();
  OutgoingSender sender{account.Address(),
                        account.Display(),
                        message.IsFromAnother(),
                        {},
                        Settings(context_).HasStandardHeaders()};
  for (const QString& line : message.FromLines().split(kLineBreak)) {
    if (!line.isEmpty()) sender.former.append(ParseAddressEntry(line));
  }
  LoadServer(account.Outgoing());
  pop_.Mode = kPopSend;
  pop_.LoginOnly = false;
  pop_.Authenticate = account.Authenticates();
  pop_.MailTo = message.Recipients();
  // The account that sends answers for the message.
  pop_.MailFrom = sender.rewrite ? sender.address : message.From();
  pop_.SetMessage(OutgoingSource(waiting.source, message.SerialId(), sender));
}

void CheckPlan::LeaveOut(CheckJob& job, const SendItem& message) {
  const DiskCollectionPtr messages = job.Messages();
  messages->Remove(message.SerialId());
  if (!messages->IsEmpty() && !job.IsStopped()) {
    job.SetStep(JobStep::Waits);
    return;
  }
  job.End();
  // That the last one was sent; of the others the next handing over made it durable.
  std::ignore = Outbox(context_, message.File(context_)).MakeDurable();  // it is sent all the same
}

// Whether it waits in another version than the one whose session has ended.
bool CheckPlan::IsStoredAnew(const SendItem& message) {
  WaitingMessage waiting;
  const QString version = message.Version();
  if (version.isEmpty()) return false;
  const auto reading = Outbox(context_, message.File(context_)).Read(message.SerialId(), waiting);
  return reading == Outbox::Reading::Ready && waiting.version != version;
}

// When the store fails, nothing more is sent: what becomes of it could not be noted.
void CheckPlan::FinishSending(CheckJob& job, const SendItem& message) {
  SessionRecord record(job.Bag());
  const bool isAgain = record.IsAgain() && !job.IsStopped();
  record.SetAgain(false);
  if (isAgain) {
    job.SetStep(JobStep::Waits);
    return;
  }
  handovers_.erase(job.SerialId());
  RecordSession(job, *message.Sender());
  const bool isAnew = IsStoredAnew(message);
  if (!isAnew) RecordOutcome(job, message);  // what the server refused was the former one
  if (record.HasStoreFailed()) {
    for (CheckJob other : jobs_) {
      if (other.Is(CheckJob::Mode::Send)) other.End();
    }
  }
  LeaveOut(job, message);
  // It was planned already when it was stored, for whoever stored it.
  if (isAnew && !job.IsStopped() && !record.HasStoreFailed()) PlanAnew(message);
}

// What the user has to decide or to mend stands at the message itself.
void CheckPlan::RecordOutcome(const CheckJob& job, const SendItem& message) {
  const SessionRecord record(job.Bag());
  if (record.IsRefusedForGood()) {
    // If it cannot be noted, the server is asked once more.
    std::ignore = SendRefusals(context_, message.File(context_))
                      .Note(message.SerialId(), RouteOf(message.Sender()));
  }
  const QString refused = record.Refused();
  QString text;
  if (!refused.isEmpty()) {
    // Its last line is what the status bar shows.
    text = refused + kLineBreak + Ui::tr("この宛先をサーバーに断られたので、送信しませんでした。");
  } else if (record.IsDoubtful()) {
    text = Ui::tr(
        "届いたかどうか分かりません。相手に確かめてから、もう一度送信するか、送信済みに"
        "するかを選んでください。");
  } else {
    return;
  }
  host_.AddEvent(1, 1, message.SerialId(), message.Subject(), QStringLiteral("mailup"), text);
}

}  // namespace vorn
