#include "transfer/results/sent_mail.h"

#include <tuple>

#include "mail/store/message_bag.h"
#include "mail/store/outbox.h"
#include "storage/ui.h"
#include "transfer/control/pop.h"
#include "transfer/plan/check_job.h"
#include "transfer/plan/check_plan.h"
#include "transfer/results/transfer_log.h"

namespace vorn {
namespace {

// Of an SMTP reply's words, which begin with its code.
bool IsForGood(const QString& reply) {
  return reply.startsWith(u'5');
}

}  // namespace

std::optional<SendItem> SentMail::Message() const {
  const DiskCollectionPtr messages =
      log_.Job() != nullptr ? CheckJob(log_.Job()).Messages() : nullptr;
  if (messages == nullptr || messages->IsEmpty()) return std::nullopt;
  return messages->First();
}

bool SentMail::BeginHandover() {
  const std::optional<SendItem> message = Message();
  if (!message) return false;
  const auto claim = Outbox(context_, message->File(context_))
                         .BeginHandover(message->Serial(), message->Version(), pop_.Server);
  if (claim == Outbox::Claim::Taken) return true;
  if (claim) {
    log_.Add(
        Ui::tr("送信を始めてから変更されたか取り消されたので、元の内容は送信しませんでした。"));
    return false;
  }
  if (claim.Error().kind == StorageError::Kind::Busy && plan_.HandOverLater(log_.Job())) {
    return false;
  }
  log_.StoreFailed(Ui::tr("送信の記録を保存できないので、送信しませんでした。"), claim.Error());
  SessionRecord(log_.Job()).FailStore();
  return false;
}

// While another program holds the file, what the server said is not forgotten.
void SentMail::Settle(const std::function<Result<>()>& store,
                      const std::function<void(const StorageError&)>& failed) {
  const Result<> stored = store();
  if (stored) return;
  if (stored.Error().kind == StorageError::Kind::Busy) {
    plan_.StoreLater(log_.Job(), store, failed);
  } else {
    failed(stored.Error());
  }
}

void SentMail::OutcomeFailed(SessionRecord record, const StorageError& failure) {
  log_.AddError(record, failure.text);
  record.FailStore();
}

void SentMail::MessageSent(const QByteArray& data) {
  const std::optional<SendItem> message = Message();
  if (!message) return;
  MessageBag::SetStatus(*message->Bag(), kStatusSent);
  Settle(
      [this, job = log_.Job(), message, data] {
        const Result<> stored = store_.StoreSent(*message->Bag(), data);
        if (!stored) return stored;
        ++log_.Counts().sent;
        SessionRecord(job).AddLog(Ui::tr("メッセージを送信しました。"));
        return stored;
      },
      [this, job = log_.Job(), message](const StorageError& reason) {
        OutcomeFailed(
            job,
            reason.Behind(Ui::tr("メッセージは送信されましたが、送信済みとして保存できません。")));
        Doubt(job, *message, Ui::tr("（サーバーは受け取りました）"));
      });
}

void SentMail::HandoverEnded(HandoverOutcome outcome, const QString& reply) {
  const std::optional<SendItem> message = Message();
  if (!message) return;
  if (outcome == HandoverOutcome::Unknown) {
    Doubt(log_.Job(), *message, reply);
    return;
  }
  if (outcome == HandoverOutcome::Refused && IsForGood(reply)) {
    SessionRecord(log_.Job()).RefuseForGood(reply);
  }
  Settle(
      [this, message] {
        return Outbox(context_, message->File(context_)).Withdraw(message->Serial());
      },
      [this, job = log_.Job()](const StorageError& reason) {
        OutcomeFailed(job, reason.Behind(Ui::tr("送信できなかったことを保存できません。")));
      });
}

// When even this cannot be stored, the note that it was under way remains, which comes to the same.
void SentMail::Doubt(SessionRecord record, const SendItem& message, const QString& reply) {
  record.Doubt();
  ++log_.Counts().doubtful;
  std::ignore = Outbox(context_, message.File(context_)).Doubt(message.Serial(), reply);
}

void SentMail::RecipientRefused(const QString& address, const QString& reply) {
  if (log_.Job() == nullptr) return;
  SessionRecord record(log_.Job());
  record.AddRefused(address + QStringLiteral(": ") + reply);
  if (IsForGood(reply)) record.RefuseForGood(record.Refused());
}

}  // namespace vorn
