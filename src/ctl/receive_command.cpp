#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

#include "ctl/command.h"
#include "frame/mail_traffic.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"

namespace vorn::ctl {
namespace {

constexpr int kTickMs = 5;

// The program around the check plan, without windows: session logs go to the error stream.
class Console : public PlanHost, public StatusPanel {
 public:
  void PostRequest(const DiskPtr&) override {}
  void SendAndReceive() override {}
  void AddEvent(int, int, const QString&, const QString& title, const QString&,
                const QString& text) override {
    if (!text.isEmpty()) Complain(title + QStringLiteral(": ") + text, 0);
  }
  void ShowStatus(const QString&, const QString&) override {}
};

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
    Print(QStringLiteral(
              "受信 %1通、受信済み %2通、停止 %3通、サーバーから削除 %4通、エラー %5件（%6秒）")
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
    return Complain(QStringLiteral("アカウント「%1」はありません。")
                        .arg(arguments.Text(QStringLiteral("account"))),
                    kExitFailure);
  }
  if (accounts->IsEmpty()) {
    return Complain(QStringLiteral("受信するアカウントがありません。"), kExitFailure);
  }
  Console console;
  MailTraffic traffic(context, console, console);
  traffic.Plan().AddReceiveJob(*accounts);

  QElapsedTimer clock;
  clock.start();
  QTimer ticks;
  QObject::connect(&ticks, &QTimer::timeout, &ticks, [&traffic] {
    traffic.Tick();
    if (traffic.Plan().IsEmpty()) QCoreApplication::quit();
  });
  ticks.start(kTickMs);
  QCoreApplication::exec();

  const ReceiveCounts& counts = traffic.Events().Counts();
  Report(counts, traffic.Events().DeletedOnServer(), static_cast<double>(clock.elapsed()) / 1000.0,
         arguments.Has(QStringLiteral("json")));
  return counts.errors == 0 ? kExitOk : kExitFailure;
}

}  // namespace vorn::ctl
