#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "mail/store/outbox.h"
#include "storage/base/time_text.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

void PrintDoubtful(const DoubtfulMessage& message, bool asJson) {
  if (!asJson) {
    Print(QStringList{message.serialId.Text(), GeneralTimeText(message.started), message.server,
                      message.subject, message.reply}
              .join(u'\t'));
    return;
  }
  const QJsonObject object{{QStringLiteral("serialId"), message.serialId.Text()},
                           {QStringLiteral("subject"), message.subject},
                           {QStringLiteral("started"), message.started},
                           {QStringLiteral("server"), message.server},
                           {QStringLiteral("reply"), message.reply}};
  Print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

}  // namespace

int Doubtful(Context& context, const Arguments& arguments) {
  Outbox outbox(context, MailDatabasePath(context));
  outbox.SettleLeftOver();
  const QString verb = arguments.Words().value(1, QStringLiteral("list"));
  const SerialId serialId(arguments.Words().value(2));
  if (verb == u"list") {
    const auto doubtful = outbox.Doubtful();
    if (!doubtful) return Complain(doubtful.Error().text, kExitFailure);
    for (const DoubtfulMessage& message : *doubtful) {
      PrintDoubtful(message, arguments.Has(QStringLiteral("json")));
    }
    return kExitOk;
  }
  if (serialId.IsEmpty() || (verb != u"again" && verb != u"sent")) {
    return Complain(Ui::tr("使い方: vornctl doubtful [list [--json] | again メッセージ | "
                           "sent メッセージ]"),
                    kExitUsage);
  }
  const Result<> done = verb == u"again" ? outbox.SendAgain(serialId) : outbox.KeepAsSent(serialId);
  if (done) return kExitOk;
  const bool isNone = done.Error().kind == StorageError::Kind::NotFound;
  return Complain(
      isNone ? Ui::tr("「%1」は、届いたかどうか分からないメッセージではありません。")
                   .arg(serialId.Text())
             : Ui::tr("「%1」の扱いを決められません。").arg(serialId.Text()) + done.Error().text,
      kExitFailure);
}

}  // namespace vorn::ctl
