#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "ctl/command_host.h"
#include "mail/archive/mbox.h"
#include "mail/codec/mime/message_index.h"
#include "mail/message_id.h"
#include "mail/store/mail_store.h"
#include "mail/store/outbox.h"
#include "objects/any_object.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

// Whether an account that was named may send what another one bears the sender's address of.
std::optional<QString> WhyNotBy(CheckPlan& plan, const SerialId& named, const QString& addressLines,
                                const QString& name) {
  const DiskPtr sender = plan.SenderFor(addressLines, named);
  if (named.IsEmpty() || sender == nullptr || sender->Serial() == named) return {};
  return Ui::tr("「%1」の差出人はアカウント「%2」のものです。何も送信していません。")
      .arg(name, AnyObject(*sender).Name());
}

// Stores composed sources as messages that wait, all or none, so that the same command can be given
// again after a failure. Gives why they could not be.
std::optional<QString> StoreWaiting(Context& context, CheckPlan& plan, const SerialId& named,
                                    const QStringList& names) {
  std::vector<std::pair<DiskPtr, QByteArray>> messages;
  for (const QString& name : names) {
    const Result<QByteArray> source = ReadFile(name);
    if (!source) return source.Error().text;
    if (!BeginsWithHeaderField(*source)) {
      return Ui::tr("「%1」はメッセージのファイルではありません。").arg(name);
    }
    const auto request = std::make_shared<Disk>(NewMessageSerialID(context));
    const MessageIndex index = IndexMessage(*source, FlagString(), {});
    if (const auto why = WhyNotBy(plan, named, index.addressLines, name)) return why;
    if (!plan.ChooseSender(request->Serial(), index.addressLines, index.subject)) {
      return Ui::tr(
                 "「%1」の差出人のアカウントがありません。--account で選んでください。"
                 "何も送信していません。")
          .arg(name);
    }
    MessageBag::SetStatus(*request, kStatusWaiting);
    MessageBag::SetFlags(*request, kWrittenFlags);
    messages.emplace_back(request, *source);
  }
  const Result<> stored = MailStore(context).StoreMessages(messages);
  if (stored) return {};
  return Ui::tr("メッセージを保存できません。何も送信していません。") + stored.Error().text;
}

}  // namespace

int Send(Context& context, const Arguments& arguments) {
  CommandHost console;
  if (arguments.Has(QStringLiteral("account"))) {
    const DiskPtr account =
        FindObjectByName(context, object_type::kAccount, arguments.Text(QStringLiteral("account")));
    if (account == nullptr) {
      return Complain(
          Ui::tr("アカウント「%1」はありません。").arg(arguments.Text(QStringLiteral("account"))),
          kExitFailure);
    }
    console.account = account->Serial();
  }
  MailTraffic traffic(context, console, console);
  const auto error =
      StoreWaiting(context, traffic.Plan(), console.account, arguments.Words().mid(1));
  if (error) return Complain(*error, kExitFailure);
  Outbox outbox(context, MailDatabasePath(context));
  outbox.SettleLeftOver();  // which is told once, at the end
  traffic.Plan().CreateMessagePlan(kPlanSend);
  const double seconds = traffic.Plan().IsEmpty() ? 0 : RunPlan(traffic);
  const ReceiveCounts& counts = traffic.Events().Counts();
  const auto left = outbox.Doubtful();
  const auto doubtful = static_cast<int>(left.ValueOr({}).size());
  if (arguments.Has(QStringLiteral("json"))) {
    const QJsonObject object{{QStringLiteral("sent"), counts.sent},
                             {QStringLiteral("errors"), counts.errors},
                             {QStringLiteral("doubtful"), doubtful},
                             {QStringLiteral("seconds"), seconds}};
    Print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
  } else {
    Print(Ui::tr("送信 %1通、エラー %2件").arg(counts.sent).arg(counts.errors));
  }
  if (counts.errors > 0 && arguments.Words().size() > 1) {
    Complain(Ui::tr("送信できなかったメッセージは「待ち」に残っています。ファイルを指定"
                    "しないvornctl sendで送信します（同じファイルをもう一度指定すると"
                    "2通になります）。"),
             0);
  }
  if (doubtful > 0) {
    Complain(Ui::tr("届いたかどうか分からないメッセージが%n通あります。vornctl doubtful "
                    "で確かめてください。",
                    nullptr, doubtful),
             0);
  }
  if (!left) return Complain(left.Error().text, kExitFailure);
  return counts.errors + console.Failures() + doubtful == 0 ? kExitOk : kExitFailure;
}

}  // namespace vorn::ctl
