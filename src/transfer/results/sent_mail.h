#pragma once

#include <functional>
#include <optional>

#include "mail/store/mail_store.h"
#include "storage/context.h"
#include "transfer/plan/send_item.h"
#include "transfer/plan/session_record.h"
#include "transfer/protocol/pop_events.h"

namespace vorn {

class CheckPlan;
class Pop;
class TransferLog;

/// Stores what comes of the message that a session hands over (`Outbox`).
class SentMail : public HandoverEvents {
 public:
  SentMail(Context& context, CheckPlan& plan, const Pop& pop, TransferLog& log)
      : context_(context), plan_(plan), pop_(pop), log_(log), store_(context) {}

  bool BeginHandover() override;
  void MessageSent(const QByteArray& data) override;
  void HandoverEnded(HandoverOutcome outcome, const QString& reply) override;
  void RecipientRefused(const QString& address, const QString& reply) override;

 private:
  std::optional<SendItem> Message() const;
  void Settle(const std::function<Result<>()>& store,
              const std::function<void(const StorageError&)>& failed);
  void OutcomeFailed(SessionRecord record, const StorageError& failure);
  void Doubt(SessionRecord record, const SendItem& message, const QString& reply);

  Context& context_;
  CheckPlan& plan_;
  const Pop& pop_;
  TransferLog& log_;
  MailStore store_;
};

}  // namespace vorn
