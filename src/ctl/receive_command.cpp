#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "ctl/command_host.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/profile/profile.h"
#include "objects/select_objects.h"
#include "storage/known_damage.h"
#include "storage/ui.h"
#include "transfer/mail_traffic.h"

namespace vorn::ctl {
namespace {

// The accounts to receive; null when the one asked for does not exist.
DiskCollectionPtr ChooseAccounts(Context& context, const Arguments& arguments) {
  if (!arguments.Has(QStringLiteral("account"))) {
    return SelectObjects(context.Objects, *context.Session, object_type::kAccount, kSelectEnabled);
  }
  const DiskPtr account =
      FindObjectByName(context, object_type::kAccount, arguments.Text(QStringLiteral("account")));
  if (account == nullptr) return nullptr;
  auto accounts = std::make_shared<DiskCollection>();
  accounts->Add(account);
  return accounts;
}

void Report(const ReceiveCounts& counts, int deleted, double seconds, bool asJson) {
  if (!asJson) {
    Print(Ui::tr("受信 %1通、受信済み %2通、停止 %3通、サーバーから削除 %4通、エラー %5件（%6秒）")
              .arg(counts.stored)
              .arg(counts.known)
              .arg(counts.stopped)
              .arg(deleted)
              .arg(counts.errors)
              .arg(seconds, 0, 'f', 2));
    return;
  }
  const QJsonObject object{
      {QStringLiteral("stored"), counts.stored},   {QStringLiteral("known"), counts.known},
      {QStringLiteral("stopped"), counts.stopped}, {QStringLiteral("deleted"), deleted},
      {QStringLiteral("errors"), counts.errors},   {QStringLiteral("seconds"), seconds}};
  Print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

}  // namespace

int Receive(Context& context, const Arguments& arguments) {
  const DiskCollectionPtr accounts = ChooseAccounts(context, arguments);
  if (accounts == nullptr) {
    return Complain(
        Ui::tr("アカウント「%1」はありません。").arg(arguments.Text(QStringLiteral("account"))),
        kExitFailure);
  }
  if (accounts->IsEmpty()) {
    return Complain(Ui::tr("受信するアカウントがありません。"), kExitFailure);
  }
  const QString damaged = FirstDamaged(context, ProfileFiles(context, *context.Session));
  if (!damaged.isEmpty()) {
    const auto damage = FindDamage(context, damaged);
    return Complain((damage ? DamageWords(*damage) : damaged) +
                        Ui::tr("受信しません。vornctl check で調べ、そのまま受信するなら "
                               "vornctl check --accept-damage を実行してください。"),
                    kExitFailure);
  }
  CommandHost console;
  MailTraffic traffic(context, console, console);
  traffic.Plan().AddReceiveJob(*accounts);

  const double seconds = RunPlan(traffic);
  const ReceiveCounts& counts = traffic.Events().Counts();
  Report(counts, traffic.Events().DeletedOnServer(), seconds,
         arguments.Has(QStringLiteral("json")));
  return counts.errors + console.Failures() == 0 ? kExitOk : kExitFailure;
}

}  // namespace vorn::ctl
