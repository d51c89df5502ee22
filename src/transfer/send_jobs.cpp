// The sending half of the check plan: which messages wait, with which account each goes, and the
// steps of a send job.

#include <QFileInfo>
#include <QScopedValueRollback>
#include <tuple>
#include <utility>

#include "mail/codec/address.h"
#include "mail/mail_store.h"
#include "mail/message_rows.h"
#include "mail/outbox.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/known_damage.h"
#include "storage/session_result.h"
#include "storage/ui.h"
#include "transfer/check_plan.h"
#include "transfer/outgoing_source.h"
#include "transfer/pop.h"
#include "transfer/trusted_certificates.h"

namespace vorn {
namespace {

const QString kAccount = QStringLiteral("account");
const QString kProcess = QStringLiteral("process");
// The choices of "OutMailServerProtocol".
constexpr int kPopBeforeSmtp = 1;

// For how long it is tried to store what came of a message.
constexpr int kStoreAgainMs = 120000;

enum SendProcess { kBegin = 0, kStart = 1, kEnded = 2 };

const QString kVersion = QStringLiteral("Version");
const QString kPeriodic = QStringLiteral("periodic");
const QString kAgain = QStringLiteral("again");
const QString kAsked = QStringLiteral("asked");

bool IsPopBeforeSmtp(const Disk& account) {
  return account.Number(u"OutMailServerProtocol") == kPopBeforeSmtp;
}

void Append(Disk& bag, const QString& key, const QString& line) {
  const QString text = bag.Text(key);
  bag.Let(key, text.isEmpty() ? line : text + kLineBreak + line);
}

void SetAccount(Disk& message, const DiskPtr& account) {
  auto accounts = std::make_shared<DiskCollection>();
  if (account != nullptr) accounts->Add(account);
  message.Set(kAccount, QVariant::fromValue(accounts));
}

const QString kTo = QStringLiteral("mailaddress_to");
const QString kFrom = QStringLiteral("mailaddress_from");

const QString kFormer = QStringLiteral("update_from_list");

// The envelope, from the address lines.
void FillEnvelope(Disk& message) {
  for (const QString& key : {kTo, kFrom, kFormer}) message.Let(key, QString());
  for (const QString& line : message.Text(u"Mailaddress").split(kLineBreak)) {
    const AddressEntry entry = ParseAddressEntry(line);
    const QString kind = entry.kind.toLower();
    if (entry.address.isEmpty()) continue;
    if (kind == u"from") {
      Append(message, kFrom, entry.address);
      Append(message, kFormer, line);
    } else if (kind == u"to" || kind == u"cc" || kind == u"bcc" || kind == u"bc") {
      Append(message, kTo, entry.address);
    }
  }
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
    for (const DiskPtr& account : *accounts) {
      if (account->Text(u"Mailaddress") != entry.address) continue;
      const int fits = (account->Text(u"Display") == entry.displayName ? 2 : 0) +
                       (account->Flag(u"Default") ? 1 : 0);
      if (fits <= best) continue;
      best = fits;
      taken = account;
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
  for (const DiskPtr& job : jobs_) {
    const DiskCollectionPtr messages = job->Collection(u"message");
    if (messages != nullptr && messages->Contains(serial)) return true;
  }
  return false;
}

Result<> CheckPlan::PlanWaiting(const QString& serial, DatabaseKind db, const QString& file) {
  std::vector<DiskPtr> messages;
  const Result<> found = FindWaiting(serial, db, file, messages);
  if (!found) return found;
  if (messages.empty() || MaySendFrom(messages.front()->Text(u"File"))) AddSendJob(messages);
  return {};
}

// Whoever pressed the button of a message does not press it again because a file was in use.
void CheckPlan::LookLater(const QString& serial, DatabaseKind db, const QString& file) {
  auto job =
      std::make_shared<Disk>(context_.Data.NewSerialID(QString::number(jobs_.Count()) + u'_'));
  job->Let(QStringLiteral("mode"), QStringLiteral("looklater"));
  job->Let(QStringLiteral("daytime"), QString());
  job->Let(kPeriodic, runsPeriodically_);
  jobs_.Add(job);
  const auto look = [this, serial, db, file] { return PlanWaiting(serial, db, file); };
  StoreLater(*job, look, [this](const StorageError& reason) { TellUnread(reason); });
}

void CheckPlan::LookAgain(Disk& job) {
  const QScopedValueRollback periodic(runsPeriodically_, job.Flag(kPeriodic));
  if (OutcomeIsStored(job)) job.Let(QStringLiteral("delete"), true);
}

void CheckPlan::TellUnread(const StorageError& reason) {
  host_.AddEvent(1, 0, QString(), Ui::tr("システム"), QStringLiteral("mailup"),
                 Ui::tr("送信待ちのメッセージを読み込めません。") + reason.text);
}

// Doubtful messages wait for the user's word, those that are planned for their turn.
Result<> CheckPlan::FindWaiting(const QString& serial, DatabaseKind db, const QString& file,
                                std::vector<DiskPtr>& messages) {
  StorageError reason;
  {
    const OpenedDatabase opened(context_, db, file);
    if (!opened && opened.Error().kind != StorageError::Kind::Busy) return {};
    if (!opened) return opened.Error();
    const RecordsetPtr rows = MessageRows(context_.Data).WaitingUntried(serial);
    for (; rows != nullptr && !rows->Eof(); rows->MoveNext()) {
      if (IsPlanned(rows->SerialID())) continue;
      auto message = std::make_shared<Disk>(rows->SerialID());
      const QString lines = rows->Fields(u"FIELD_MAILADDRESS").toString();
      SetAccount(*message, AccountFor(lines));
      message->Let(QStringLiteral("File"), file.isEmpty() ? MailDatabasePath(context_) : file);
      message->Let(QStringLiteral("Password"), context_.Session->Text(u"password"));
      message->Let(QStringLiteral("Mailaddress"), lines);
      message->Let(QStringLiteral("Subject"), rows->Fields(u"FIELD_SUBJECT"));
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

bool CheckPlan::UseChosenAccount(Disk& message, DiskPtr& chosen, bool& asked) {
  DiskPtr account = context_.Objects.Find(chosen_.value(message.SerialID()));
  // Nobody asked for automatic checking, and two questions at once could not be told apart.
  const bool mayAsk = !asking_ && !(runsPeriodically_ && Settings(context_)->Flag(u"Careful"));
  if (account == nullptr && !asked && mayAsk) {
    asked = true;
    chosen = AskForAccount(message.Text(u"Subject"));
  }
  if (account == nullptr) account = chosen;
  if (account == nullptr) {
    const bool isTold = !mayAsk && toldOfNoAccount_.contains(message.SerialID());
    toldOfNoAccount_.insert(message.SerialID());
    if (!isTold) {
      host_.AddEvent(1, 1, message.SerialID(), Ui::tr("システム"), QStringLiteral("mailup"),
                     Ui::tr("送信で使用するアカウントが不明です。"));
    }
    return false;
  }
  Append(message, kFrom, account->Text(u"Mailaddress"));
  message.Let(QStringLiteral("update_from"), true);
  SetAccount(message, account);
  return true;
}

void CheckPlan::AddSendJob(const std::vector<DiskPtr>& messages) {
  auto waiting = std::make_shared<DiskCollection>();
  DiskPtr chosen;
  bool asked = false;
  for (const DiskPtr& message : messages) {
    FillEnvelope(*message);
    const bool hasAccount = !message->Collection(kAccount)->IsEmpty();
    if (hasAccount || UseChosenAccount(*message, chosen, asked)) waiting->Add(message);
  }
  if (waiting->IsEmpty()) return;
  auto job =
      std::make_shared<Disk>(context_.Data.NewSerialID(QString::number(jobs_.Count()) + u'_'));
  job->Let(QStringLiteral("mode"), QStringLiteral("mailup"));
  job->Let(QStringLiteral("daytime"), QString());
  job->Set(QStringLiteral("message"), QVariant::fromValue(waiting));
  jobs_.Add(job);
}

void CheckPlan::SendStep(Disk& job) {
  if (pop_.Busy()) return;
  const DiskPtr message = job.Collection(u"message")->First();
  const int process = job.Number(kProcess);
  if (job.Flag(u"stop") && process != kEnded) {
    FinishSending(job, message);
    return;
  }
  switch (process) {
    case kBegin:
      if (MaySend(job, *message) && TakeSending(job, *message)) BeginSending(job, *message);
      break;
    case kStart:
      StartSending(job, message);
      break;
    default:
      if (OutcomeIsStored(job)) FinishSending(job, message);
  }
}

void CheckPlan::StoreLater(const Disk& job, std::function<Result<>()> store,
                           std::function<void(const StorageError&)> failed) {
  unstored_[job.SerialID()] = {std::move(store), std::move(failed), QDeadlineTimer(kStoreAgainMs)};
}

bool CheckPlan::HandOverLater(Disk& job) {
  const auto [limit, isFirst] = handovers_.try_emplace(job.SerialID(), kStoreAgainMs);
  if (limit->second.hasExpired()) return false;
  job.Let(kAgain, true);
  return true;
}

bool CheckPlan::OutcomeIsStored(const Disk& job) {
  const auto found = unstored_.find(job.SerialID());
  if (found == unstored_.end()) return true;
  const Unstored unstored = found->second;  // a question on the way may end all that is planned
  if (const Result<> stored = unstored.store(); !stored) {
    if (!unstored.limit.hasExpired()) return false;
    unstored.failed(stored.Error());
  }
  unstored_.erase(job.SerialID());
  return true;
}

// Before the message's own session there may be one that only logs in.
bool CheckPlan::SendingHasSession(const Disk& job) const {
  return IsSent(job) || (job.Number(kProcess) == kStart && pop_.Tag == job.SerialID());
}

// Whether the session of its message has begun.
bool CheckPlan::IsSent(const Disk& job) {
  return job.Text(u"mode") == u"mailup" && job.Number(kProcess) == kEnded;
}

// Asks for a missing password, once for each account, while others may send.
bool CheckPlan::MaySend(Disk& job, const Disk& message) {
  const DiskPtr account = message.Collection(kAccount)->First();
  if (!IsPopBeforeSmtp(*account) || HasPassword(*account) ||
      job.Text(kAsked) == account->SerialID()) {
    return true;
  }
  works_.erase(kSendingWork);
  job.Let(kAsked, account->SerialID());
  KnowsPassword(*account);
  return jobs_.Contains(job.SerialID());  // not cancelled meanwhile
}

// One program sends at a time. Whatever stands as under way when it begins was left by a death.
bool CheckPlan::TakeSending(Disk& job, const Disk& message) {
  const auto held = works_.find(kSendingWork);
  const bool goesOn = held != works_.end() && held->second->IsHeld();
  if (!TakeWork(kSendingWork, job)) return false;
  if (!goesOn) ReportDoubtful(Outbox(context_, message.Text(u"File")).DoubtLeftOver());
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
void CheckPlan::BeginSending(Disk& job, const Disk& message) {
  const DiskPtr account = message.Collection(kAccount)->First();
  if (IsPopBeforeSmtp(*account) && HasPassword(*account)) {
    LoadReceiving(*account);
    pop_.LoginOnly = true;
    pop_.Tag = job.SerialID();
    pop_.Start();
  }
  job.Let(QStringLiteral("log"), QString());
  job.Let(QStringLiteral("error"), false);
  job.Let(QStringLiteral("loginrefused"), false);
  job.Let(QStringLiteral("refused"), QString());
  job.Let(QStringLiteral("doubtful"), false);
  job.Let(kProcess, static_cast<int>(kStart));
}

// Sends what the row holds now. A message that was stored anew since it was planned is planned
// anew, with the addresses that it has by now.
void CheckPlan::StartSending(Disk& job, const DiskPtr& message) {
  const DiskPtr account = message->Collection(kAccount)->First();
  ForgetRefusedPassword(job, *account);
  if (job.Flag(u"loginrefused")) job.Let(kAsked, QString());
  WaitingMessage waiting;
  const QString serial = message->SerialID();
  const auto reading = Outbox(context_, message->Text(u"File")).Read(serial, waiting);
  if (!reading) {
    host_.AddEvent(1, 1, serial, Ui::tr("システム"), QStringLiteral("mailup"),
                   Ui::tr("メッセージ「%1」を読み込めないので、送信しませんでした。")
                           .arg(message->Text(u"Subject")) +
                       reading.Error().text);
    LeaveOut(job, message);
    return;
  }
  if (*reading == Outbox::Reading::Closed) return;  // tried again at the next tick
  if (*reading == Outbox::Reading::Gone) {
    LeaveOut(job, message);
    return;
  }
  if (waiting.addressLines != message->Text(u"Mailaddress")) {
    LeaveOut(job, message);
    PlanAnew(*message);
    return;
  }
  LoadSending(*message, waiting);
  // A receive job may have had a session since this one began.
  pop_.Tag = job.SerialID();
  pop_.Start();
  job.Let(kProcess, static_cast<int>(kEnded));
}

void CheckPlan::PlanAnew(const Disk& message) {
  CreateMessagePlan(kPlanSend, message.SerialID(), DatabaseKind::MailByPath, message.Text(u"File"));
}

void CheckPlan::LoadSending(Disk& message, const WaitingMessage& waiting) {
  // What the message keeps when it is stored as sent.
  message.Let(QStringLiteral("Flag"), waiting.flags);
  message.Let(QStringLiteral("folder"), waiting.folders);
  message.Let(kVersion, waiting.version);

  const DiskPtr account = message.Collection(kAccount)->First();
  OutgoingSender sender{account->Text(u"Mailaddress"),
                        account->Text(u"Display"),
                        message.Flag(u"update_from"),
                        {},
                        Settings(context_)->Flag(u"StandardHeaders")};
  for (const QString& line : message.Text(kFormer).split(kLineBreak)) {
    if (!line.isEmpty()) sender.former.append(ParseAddressEntry(line));
  }
  pop_.Server = account->Text(u"OutMailServer");
  pop_.ServerPort = account->Number(u"OutMailServerPort");
  pop_.Mode = kPopSend;
  pop_.LoginOnly = false;
  pop_.Encryption = static_cast<Security>(account->Number(u"OutMailServerSecurity"));
  pop_.TrustedFingerprints =
      TrustedCertificates(account->Text(u"OutMailServerCertificates")).For(pop_.Server);
  pop_.Authenticate = account->Flag(u"OutMailServerAuth");
  pop_.User = account->Text(u"OutMailServerUser");
  pop_.Password = account->Text(u"OutMailServerPassword");
  pop_.MailTo = message.Text(kTo);
  // The account that sends answers for the message.
  pop_.MailFrom = sender.rewrite ? sender.address : message.Text(kFrom);
  pop_.SetMessage(OutgoingSource(waiting.source, message.SerialID(), sender));
}

void CheckPlan::LeaveOut(Disk& job, const DiskPtr& message) {
  const DiskCollectionPtr messages = job.Collection(u"message");
  messages->Remove(message->SerialID());
  if (!messages->IsEmpty() && !job.Flag(u"stop")) {
    job.Let(kProcess, static_cast<int>(kBegin));
    return;
  }
  job.Let(QStringLiteral("delete"), true);
  // That the last one was sent; of the others the next handing over made it durable.
  std::ignore = Outbox(context_, message->Text(u"File")).MakeDurable();  // it is sent all the same
}

// Whether it waits in another version than the one whose session has ended.
bool CheckPlan::IsStoredAnew(const Disk& message) {
  WaitingMessage waiting;
  const QString version = message.Text(kVersion);
  if (version.isEmpty()) return false;
  const auto reading = Outbox(context_, message.Text(u"File")).Read(message.SerialID(), waiting);
  return reading == Outbox::Reading::Ready && waiting.version != version;
}

// When the store fails, nothing more is sent: what becomes of it could not be noted.
void CheckPlan::FinishSending(Disk& job, const DiskPtr& message) {
  const bool isAgain = job.Flag(kAgain) && !job.Flag(u"stop");
  job.Let(kAgain, false);
  if (isAgain) {
    job.Let(kProcess, static_cast<int>(kBegin));
    return;
  }
  handovers_.erase(job.SerialID());
  RecordSession(job, *message->Collection(kAccount)->First());
  const bool isAnew = IsStoredAnew(*message);
  if (!isAnew) RecordOutcome(job, *message);  // what the server refused was the former one
  if (job.Flag(u"storefailed")) {
    for (const DiskPtr& other : jobs_) {
      if (other->Text(u"mode") == u"mailup") other->Let(QStringLiteral("delete"), true);
    }
  }
  LeaveOut(job, message);
  // It was planned already when it was stored, for whoever stored it.
  if (isAnew && !job.Flag(u"stop") && !job.Flag(u"storefailed")) PlanAnew(*message);
}

// What the user has to decide or to mend stands at the message itself.
void CheckPlan::RecordOutcome(const Disk& job, const Disk& message) {
  const QString refused = job.Text(u"refused");
  QString text;
  if (!refused.isEmpty()) {
    // Its last line is what the status bar shows.
    text = refused + kLineBreak + Ui::tr("この宛先をサーバーに断られたので、送信しませんでした。");
  } else if (job.Flag(u"doubtful")) {
    text = Ui::tr(
        "届いたかどうか分かりません。相手に確かめてから、もう一度送信するか、送信済みに"
        "するかを選んでください。");
  } else {
    return;
  }
  host_.AddEvent(1, 1, message.SerialID(), message.Text(u"Subject"), QStringLiteral("mailup"),
                 text);
}

}  // namespace vorn
