#include "transfer/plan/waiting_messages.h"

#include <QFileInfo>
#include <algorithm>
#include <memory>

#include "mail/store/mail_row.h"
#include "mail/store/message_rows.h"
#include "mail/store/outbox.h"
#include "mail/store/send_refusals.h"
#include "objects/settings.h"
#include "storage/bags/profile_bag.h"
#include "storage/known_damage.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"
#include "transfer/plan/check_job.h"
#include "transfer/plan/late_outcomes.h"
#include "transfer/plan/plan_host.h"
#include "transfer/plan/planned_jobs.h"
#include "transfer/plan/send_item.h"
#include "transfer/plan/sender_choice.h"

namespace vorn {

Result<> WaitingMessages::Plan(const WaitingSearch& search) {
  Result<std::vector<SendItem>> found = Find(search);
  if (!found) return found.Error();
  std::vector<SendItem>& messages = *found;
  if (messages.empty() || !MaySendFrom(messages.front().File(context_))) return {};
  senders_.GiveSenders(messages);
  if (search.isCheck && Settings(context_).Care().skipsRefused) {
    const Result<> leftOut = LeaveOutRefused(messages);
    if (leftOut.Error().kind == StorageError::Kind::Busy) return leftOut;
    if (!leftOut) {
      TellUnread(leftOut.Error());
      return {};
    }
  }
  AddSendJob(messages);
  return {};
}

// In a broken file what was sent may seem to wait.
bool WaitingMessages::MaySendFrom(const QString& file) {
  const QString path = PlatformPath(context_, file);
  if (!IsKnownBroken(context_, path)) return true;
  host_.AddEvent(kEventError, kEventObject, SerialId(), Ui::tr("システム"),
                 QStringLiteral("mailup"),
                 Ui::tr("「%1」が壊れているため、送信しません。").arg(QFileInfo(path).fileName()));
  return false;
}

bool WaitingMessages::IsPlanned(const SerialId& serial) const {
  for (const CheckJob job : jobs_.All()) {
    const DiskCollectionPtr messages = job.Messages();
    if (messages != nullptr && messages->Contains(serial)) return true;
  }
  return false;
}

// What a server has refused for good would be refused at each check, until somebody mends the
// message or the account, or sends it again.
Result<> WaitingMessages::LeaveOutRefused(std::vector<SendItem>& messages) {
  const auto refusals = SendRefusals(context_, messages.front().File(context_)).All();
  if (!refusals) return refusals.Error();
  const auto& known = *refusals;
  const auto first =
      std::stable_partition(messages.begin(), messages.end(), [&known](const SendItem& message) {
        const auto refused = known.find(message.Serial());
        return refused == known.end() || refused->route != message.Route();
      });
  std::vector<SendItem> refused(first, messages.end());
  messages.erase(first, messages.end());
  if (jobs_.RunsPeriodically()) return {};
  // Each time that it was tried is told of once.
  std::erase_if(refused, [&](const SendItem& message) {
    const SendRefusal refusal = known.value(message.Serial());
    const bool isTold = told_.value(message.Serial()) == refusal.tried;
    NoteTold(message.Serial(), refusal);
    return isTold;
  });
  if (!refused.empty()) TellRefused(refused);
  return {};
}

// Folded, each stands where it was first told of.
void WaitingMessages::TellRefused(const std::vector<SendItem>& messages) {
  if (!Settings(context_).FoldsEvents()) {
    host_.AddEvent(
        kEventError, kEventObject, SerialId(), Ui::tr("システム"), QStringLiteral("mailup"),
        Ui::tr("サーバーに断られたメッセージが%n通あり、送信しませんでした。開いて編集し、もう一度"
               "送信してください。",
               nullptr, static_cast<int>(messages.size())));
    return;
  }
  for (const SendItem& message : messages) {
    host_.AddEvent(kEventError, kEventMessage, message.Serial(), message.Subject(),
                   QStringLiteral("mailup"),
                   Ui::tr("サーバーに断られたままなので、送信しませんでした。開いて編集し、もう一度"
                          "送信してください。"));
  }
}

// Whoever pressed the button of a message does not press it again because a file was in use.
void WaitingMessages::LookLater(const WaitingSearch& search) {
  const CheckJob job = CheckJob::Look(jobs_.NewSerial(), jobs_.RunsPeriodically());
  jobs_.Add(job);
  const auto look = [this, search] { return Plan(search); };
  late_.StoreLater(job, look, [this](const StorageError& reason) { TellUnread(reason); });
}

void WaitingMessages::LookAgain(CheckJob& job) {
  const auto periodic = jobs_.Periodically(job.IsPeriodic());
  if (late_.IsStored(job)) job.End();
}

void WaitingMessages::TellUnread(const StorageError& reason) {
  host_.AddEvent(kEventError, kEventObject, SerialId(), Ui::tr("システム"),
                 QStringLiteral("mailup"),
                 Ui::tr("送信待ちのメッセージを読み込めません。") + reason.text);
}

// Doubtful messages wait for the user's word, those that are planned for their turn.
Result<std::vector<SendItem>> WaitingMessages::Find(const WaitingSearch& search) {
  std::vector<SendItem> messages;
  StorageError reason;
  {
    const OpenedDatabase opened(context_, search.db, search.file);
    if (!opened && opened.Error().kind != StorageError::Kind::Busy) return messages;
    if (!opened) return opened.Error();
    const QString file = search.file.isEmpty() ? MailDatabasePath(context_) : search.file;
    const RecordsetPtr rows = MessageRows(context_.Data).WaitingUntried(search.serial);
    for (; rows != nullptr && !rows->Eof(); rows->MoveNext()) {
      const MailRow row(*rows);
      if (IsPlanned(row.Serial())) continue;
      SendItem message(row.Serial(), file, ProfileBag(*context_.Session).Password(),
                       row.AddressLines(), row.Subject());
      message.SetSender(senders_.AccountFor(row.AddressLines()));
      messages.push_back(message);
    }
    if (rows != nullptr && !rows->Failed()) return messages;
    reason = ReasonOf(context_.Data);
  }
  if (reason.kind == StorageError::Kind::Busy) return reason;
  TellUnread(reason);
  return messages;
}

void WaitingMessages::AddSendJob(const std::vector<SendItem>& messages) {
  if (messages.empty()) return;
  auto waiting = std::make_shared<DiskCollection>();
  for (const SendItem& message : messages) waiting->Add(message.Bag());
  const bool isUnasked = jobs_.RunsPeriodically() && Settings(context_).Care().asksNothingAlone;
  jobs_.Add(CheckJob::Send(jobs_.NewSerial(), waiting, isUnasked));
}

}  // namespace vorn
