#include "transfer/results/transfer_events.h"

#include "objects/account.h"
#include "storage/ui.h"
#include "transfer/control/pop.h"
#include "transfer/plan/check_job.h"
#include "transfer/plan/check_plan.h"
#include "transfer/plan/send_item.h"

namespace vorn {

TransferEvents::TransferEvents(Context& context, CheckPlan& plan, const Pop& pop,
                               StatusPanel& panel)
    : plan_(plan),
      pop_(pop),
      panel_(panel),
      received_(context, pop, log_),
      sent_(context, plan, pop, log_) {}

void TransferEvents::SessionStarted() {
  log_.Begin(plan_.Job(SerialId(pop_.Tag)));
  received_.Begin();
  panel_.ShowStatus(pop_.Server, QStringLiteral("account"));
  panel_.ShowWork(Ui::tr("接続中 …（%1）").arg(AccountName()));
}

void TransferEvents::SessionEnded() {
  received_.End();
  deleted_ += pop_.DeletedOnServer();
  panel_.ShowStatus(QString(), QString());
  panel_.ShowWork(QString());
  log_.End();
}

void TransferEvents::Error(PopError code, const QString& text) {
  log_.AddError(code, text);
}

void TransferEvents::Log(const QString& text) {
  log_.Add(text);
}

// As the user calls it; the server where nobody is served.
QString TransferEvents::AccountName() const {
  if (log_.Job() == nullptr) return pop_.Server;
  const CheckJob job(log_.Job());
  if (const DiskCollectionPtr accounts = job.Accounts(); accounts && !accounts->IsEmpty()) {
    return Account(accounts->First()).Name();
  }
  const DiskCollectionPtr messages = job.Messages();
  if (messages == nullptr || messages->IsEmpty()) return pop_.Server;
  const auto sender = SendItem(messages->First()).Sender();
  return sender ? sender->Name() : pop_.Server;
}

QString TransferEvents::WorkWords(const FetchedMessages& fetched) const {
  const DiskCollectionPtr waiting =
      log_.Job() != nullptr ? CheckJob(log_.Job()).Messages() : nullptr;
  if (waiting != nullptr) {
    return Ui::tr("送信中 …（あと%1通、%2）").arg(QString::number(waiting->Count()), AccountName());
  }
  // How many there are to come is known once all are decided.
  if (fetched.undecided == 0 && fetched.wanted > 0) {
    return Ui::tr("%1 / %2 通を受信中 …（%3）")
        .arg(QString::number(fetched.come), QString::number(fetched.wanted), AccountName());
  }
  if (fetched.come == 0) return Ui::tr("届いているか確認中 …（%1）").arg(AccountName());
  return Ui::tr("%n通を受信、ほかに届いているか確認中 …（%1）", nullptr, fetched.come)
      .arg(AccountName());
}

void TransferEvents::Progress(qint64 total, qint64 done, const FetchedMessages& fetched) {
  const bool sending = pop_.Mode == kPopSend || pop_.Mode == kPopSendOther;
  const double percent =
      total > 0 ? static_cast<double>(done) / static_cast<double>(total) * 100.0 : 0.0;
  panel_.ShowStatus(QString::number(percent, 'f', 1),
                    sending ? QStringLiteral("mailup") : QStringLiteral("maildown"));
  panel_.ShowWork(WorkWords(fetched));
}

}  // namespace vorn
