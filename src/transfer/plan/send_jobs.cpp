#include "transfer/plan/send_jobs.h"

#include <tuple>

#include "mail/codec/header/address.h"
#include "mail/store/outbox.h"
#include "mail/store/send_refusals.h"
#include "objects/account.h"
#include "objects/settings.h"
#include "storage/base/time_text.h"
#include "storage/ui.h"
#include "transfer/control/pop.h"
#include "transfer/plan/account_sessions.h"
#include "transfer/plan/check_job.h"
#include "transfer/plan/held_works.h"
#include "transfer/plan/outgoing_source.h"
#include "transfer/plan/plan_host.h"
#include "transfer/plan/planned_jobs.h"
#include "transfer/plan/send_item.h"
#include "transfer/plan/session_record.h"

namespace vorn {

void SendJobs::Plan(const WaitingSearch& search) {
  // Also where nothing else waits: what a death left has to be told.
  ReportDoubtful(Outbox(context_, MailDatabasePath(context_)).SettleLeftOver());
  if (!waiting_.Plan(search)) waiting_.LookLater(search);
}

void SendJobs::Step(CheckJob& job) {
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
      if (late_.IsStored(job)) FinishSending(job, message);
  }
}

// Before the message's own session there may be one that only logs in.
bool SendJobs::HasSession(const CheckJob& job) const {
  return job.Step() == JobStep::Sent ||
         (job.Step() == JobStep::Begun && pop_.Tag == job.Serial().Text());
}

// Asks for a missing password, once for messages of one account, while others may send; and not at
// all where nobody asked for the sending.
bool SendJobs::MaySend(CheckJob& job, const SendItem& message) {
  Account account = *message.Sender();
  const bool isNeeded = account.SendsByAskedPassword();
  if ((!account.IsPopBeforeSmtp() && !isNeeded) || account.HasCredentials()) return true;
  if (job.IsUnasked()) {
    TellNotByItself(account);
    LeaveOut(job, message);
    return false;
  }
  SessionRecord record(job.Bag());
  if (record.Asked() != account.Serial()) {
    works_.Release(kSendingWork);
    record.SetAsked(account.Serial());
    sessions_.KnowsPassword(account, true);
    if (!jobs_.Contains(job.Serial())) return false;  // cancelled meanwhile
    if (isNeeded && !account.HasCredentials()) {
      TellOfNoPassword(account, Ui::tr("パスワードが入力されなかったので、送信しませんでした。"));
    }
  }
  if (!isNeeded || account.HasCredentials()) return true;
  LeaveOut(job, message);
  return false;
}

// Once, however often it is checked.
void SendJobs::TellNotByItself(const Account& account) {
  if (toldOfNoPassword_.contains(account.Serial())) return;
  toldOfNoPassword_.insert(account.Serial());
  TellOfNoPassword(account, Ui::tr("パスワードが分からないので、自動では送信しません。送受信を"
                                   "押すと入力できます。"));
}

void SendJobs::TellOfNoPassword(const Account& account, const QString& sentence) {
  host_.AddEvent(kEventError, kEventObject, account.Serial(), account.Name(),
                 QStringLiteral("account"), sentence);
}

// One program sends at a time. Whatever stands as under way when it begins was left by a death.
bool SendJobs::TakeSending(CheckJob& job, const SendItem& message) {
  const bool goesOn = works_.IsHeld(kSendingWork);
  if (!works_.Take(kSendingWork, job)) return false;
  if (!goesOn) ReportDoubtful(Outbox(context_, message.File(context_)).DoubtLeftOver());
  return true;
}

void SendJobs::ReportDoubtful(int count) {
  if (count == 0) return;
  host_.AddEvent(
      kEventError, kEventObject, SerialId(), Ui::tr("システム"), QStringLiteral("mailup"),
      Ui::tr("送信の途中で終了したため、届いたかどうか分からないメッセージが%1通あります。"
             "開いて、もう一度送信するか、送信済みにするかを選んでください。")
          .arg(count));
}

// "POP before SMTP" first logs in at the incoming server.
void SendJobs::BeginSending(CheckJob& job, const Account& account) {
  if (account.IsPopBeforeSmtp() && account.HasCredentials()) {
    sessions_.LoadReceiving(account);
    pop_.LoginOnly = true;
    pop_.Tag = job.Serial().Text();
    pop_.Start();
  }
  SessionRecord(job.Bag()).Begin();
  job.SetStep(JobStep::Begun);
}

// Sends what the row holds now. A message that was stored anew since it was planned is planned
// anew, with the addresses that it has by now.
void SendJobs::StartSending(CheckJob& job, SendItem& message) {
  Account account = *message.Sender();
  sessions_.ForgetRefusedPassword(job, account);
  SessionRecord record(job.Bag());
  if (record.IsLoginRefused()) record.SetAsked({});
  // The receiving of the same check may have shown it to be wrong.
  if (account.SendsByAskedPassword() && !account.HasCredentials()) {
    record.SetAsked({});
    job.SetStep(JobStep::Waits);
    return;
  }
  // The server would refuse the message for want of the login, which would be noted as its answer.
  if (job.IsUnasked() && account.IsPopBeforeSmtp() && record.HasError()) {
    sessions_.Record(job, account);
    LeaveOut(job, message);
    return;
  }
  const SerialId serial = message.Serial();
  const auto waiting = Outbox(context_, message.File(context_)).Read(serial);
  if (!waiting) {
    host_.AddEvent(
        kEventError, kEventMessage, serial, Ui::tr("システム"), QStringLiteral("mailup"),
        Ui::tr("メッセージ「%1」を読み込めないので、送信しませんでした。").arg(message.Subject()) +
            waiting.Error().text);
    LeaveOut(job, message);
    return;
  }
  if (waiting->reading == Outbox::Reading::Closed) return;  // tried again at the next tick
  if (waiting->reading == Outbox::Reading::Gone) {
    LeaveOut(job, message);
    return;
  }
  if (waiting->message.addressLines != message.AddressLines()) {
    LeaveOut(job, message);
    PlanAnew(message);
    return;
  }
  LoadSending(message, waiting->message);
  // A receive job may have had a session since this one began.
  pop_.Tag = job.Serial().Text();
  pop_.Start();
  job.SetStep(JobStep::Sent);
}

void SendJobs::PlanAnew(const SendItem& message) {
  Plan({message.Serial(), DatabaseKind::MailByPath, message.File(context_), false});
}

void SendJobs::LoadSending(SendItem& message, const WaitingMessage& waiting) {
  message.Take(waiting);
  const Account account = *message.Sender();
  OutgoingSender sender{account.Address(),
                        account.Display(),
                        message.IsFromAnother(),
                        {},
                        Settings(context_).Standards().keepsSenders};
  for (const QString& line : message.FromLines().split(kLineBreak)) {
    if (!line.isEmpty()) sender.former.append(ParseAddressEntry(line));
  }
  pop_.Target = account.Outgoing();
  pop_.Mode = kPopSend;
  pop_.LoginOnly = false;
  pop_.Authenticate = account.Authenticates();
  pop_.MailTo = message.Recipients();
  // The account that sends answers for the message.
  pop_.MailFrom = sender.rewrite ? sender.address : message.From();
  pop_.SetMessage(OutgoingSource(waiting.source, message.Serial(), sender));
}

void SendJobs::LeaveOut(CheckJob& job, const SendItem& message) {
  const DiskCollectionPtr messages = job.Messages();
  messages->Remove(message.Serial());
  if (!messages->IsEmpty() && !job.IsStopped()) {
    job.SetStep(JobStep::Waits);
    return;
  }
  job.End();
  // That the last one was sent; of the others the next handing over made it durable.
  std::ignore = Outbox(context_, message.File(context_)).MakeDurable();  // it is sent all the same
}

// Whether it waits in another version than the one whose session has ended.
bool SendJobs::IsStoredAnew(const SendItem& message) {
  const QString version = message.Version();
  if (version.isEmpty()) return false;
  const auto waiting = Outbox(context_, message.File(context_)).Read(message.Serial());
  return waiting && waiting->reading == Outbox::Reading::Ready &&
         waiting->message.version != version;
}

// When the store fails, nothing more is sent: what becomes of it could not be noted.
void SendJobs::FinishSending(CheckJob& job, const SendItem& message) {
  SessionRecord record(job.Bag());
  const bool isAgain = record.IsAgain() && !job.IsStopped();
  record.SetAgain(false);
  if (isAgain) {
    job.SetStep(JobStep::Waits);
    return;
  }
  late_.EndHandover(job);
  if (Account account = *message.Sender(); account.SendsByAskedPassword()) {
    sessions_.ForgetRefusedPassword(job, account);
    if (record.IsLoginRefused()) record.SetAsked({});  // the next message asks anew
  }
  const bool isAnew = IsStoredAnew(message);
  if (isAnew) {  // what the server refused was the former one
    sessions_.Record(job, *message.Sender());
  } else {
    NoteRefusal(job, message);
    Record(job, message);
  }
  if (record.HasStoreFailed()) {
    for (CheckJob other : jobs_.All()) {
      if (other.Is(CheckJob::Mode::Send)) other.End();
    }
  }
  LeaveOut(job, message);
  // It was planned already when it was stored, for whoever stored it.
  if (isAnew && !job.IsStopped() && !record.HasStoreFailed()) PlanAnew(message);
}

// What the user has to decide or to mend stands at the message itself; where events are folded,
// that is all there is of it, with what the session said.
void SendJobs::Record(const CheckJob& job, const SendItem& message) {
  const QString outcome = OutcomeOf(job);
  const bool isFolded = !outcome.isEmpty() && Settings(context_).FoldsEvents();
  if (!isFolded) sessions_.Record(job, *message.Sender());
  if (outcome.isEmpty()) return;
  const SessionRecord record(job.Bag());
  // By its lines the message's window marks whom a server refused; the last is what the status bar
  // shows.
  const bool isOfRecipients = !record.Refused().isEmpty();
  const QString words = isFolded && !isOfRecipients ? record.Log() : record.Refused();
  host_.AddEvent(kEventError, kEventMessage, message.Serial(), message.Subject(),
                 QStringLiteral("mailup"),
                 words.isEmpty() ? outcome : words + kLineBreak + outcome);
}

// In a sentence; empty where it is the account's matter, or there is none.
QString SendJobs::OutcomeOf(const CheckJob& job) const {
  const SessionRecord record(job.Bag());
  if (!record.Refused().isEmpty()) {
    return Ui::tr("この宛先をサーバーに断られたので、送信しませんでした。");
  }
  if (record.IsDoubtful()) {
    return Ui::tr(
        "届いたかどうか分かりません。相手に確かめてから、もう一度送信するか、送信済みに"
        "するかを選んでください。");
  }
  if (record.IsRefusedForGood()) {
    return Ui::tr(
        "サーバーに断られたので、送信しませんでした。開いて編集し、もう一度送信してください。");
  }
  return {};
}

// If it cannot be noted, the server is asked once more.
void SendJobs::NoteRefusal(const CheckJob& job, const SendItem& message) {
  const SessionRecord record(job.Bag());
  if (record.IsRefusedForGood()) {
    const SendRefusal refusal{message.Route(), CurrentTimeText(), record.RefusedForGood()};
    std::ignore = SendRefusals(context_, message.File(context_)).Note(message.Serial(), refusal);
    waiting_.NoteTold(message.Serial(), refusal);
  }
  if (record.IsRefusedForGood() || record.IsDoubtful()) host_.WaitingChanged();
}

}  // namespace vorn
