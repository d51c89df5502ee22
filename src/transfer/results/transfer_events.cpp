#include "transfer/results/transfer_events.h"

#include "transfer/control/pop.h"
#include "transfer/plan/check_plan.h"

namespace vorn {

TransferEvents::TransferEvents(Context& context, CheckPlan& plan, const Pop& pop,
                               StatusPanel& panel)
    : plan_(plan),
      pop_(pop),
      panel_(panel),
      received_(context, pop, log_),
      sent_(context, plan, pop, log_) {}

void TransferEvents::SessionStarted() {
  log_.Begin(plan_.Job(pop_.Tag));
  received_.Begin();
  panel_.ShowStatus(pop_.Server, QStringLiteral("account"));
}

void TransferEvents::SessionEnded() {
  received_.End();
  deleted_ += pop_.DeletedOnServer();
  panel_.ShowStatus(QString(), QString());
  log_.End();
}

void TransferEvents::Error(PopError code, const QString& text) {
  log_.AddError(code, text);
}

void TransferEvents::Log(const QString& text) {
  log_.Add(text);
}

void TransferEvents::Progress(qint64 total, qint64 done) {
  const bool sending = pop_.Mode == kPopSend || pop_.Mode == kPopSendOther;
  const double percent =
      total > 0 ? static_cast<double>(done) / static_cast<double>(total) * 100.0 : 0.0;
  panel_.ShowStatus(QString::number(percent, 'f', 1),
                    sending ? QStringLiteral("mailup") : QStringLiteral("maildown"));
}

}  // namespace vorn
