#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "objects/save_object.h"
#include "storage/ui.h"
#include "transfer/rules/receive_stop_rules.h"
#include "transfer/rules/rules_object.h"

namespace vorn::ctl {
namespace {

int AddRule(Context& context, const QString& line) {
  if (ReceiveStopRules(line).IsEmpty()) {
    return Complain(Ui::tr("条件は「from:」か「x-mailer:」で始め、後にパターンを続けて"
                           "ください。"),
                    kExitUsage);
  }
  if (StopsEverything(line)) {
    return Complain(Ui::tr("「%1」はすべてのメッセージに合います。").arg(line), kExitUsage);
  }
  RulesObject rules(context);
  const QString lines = rules.Lines();
  rules.SetLines(lines.isEmpty() ? line : lines + kLineBreak + line);
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, *rules.Bag());
  if (saved) return kExitOk;
  return Complain(Ui::tr("保存できませんでした。") + saved.Error().text, kExitFailure);
}

int TestRules(Context& context, const QString& name, bool asJson) {
  const Result<QByteArray> source = ReadFile(name);
  if (!source) return Complain(source.Error().text, kExitFailure);
  const RulesObject rules(context);
  const auto rule = ReceiveStopRules(rules.Lines()).FirstMatch(*source);
  const bool deletes = rule.has_value() && rules.DeletesOnServer();
  if (asJson) {
    QJsonObject outcome{{QStringLiteral("stop"), rule.has_value()},
                        {QStringLiteral("deleteOnServer"), deletes},
                        {QStringLiteral("rule"), QJsonValue()}};
    if (rule) outcome[QStringLiteral("rule")] = *rule;
    Print(QString::fromUtf8(QJsonDocument(outcome).toJson(QJsonDocument::Compact)));
  } else if (rule) {
    Print(Ui::tr("受信しません: ") + *rule +
          (deletes ? Ui::tr("（サーバーから削除します）") : QString()));
  } else {
    Print(Ui::tr("受信します。"));
  }
  return kExitOk;
}

}  // namespace

int Rules(Context& context, const Arguments& arguments) {
  const QString action = arguments.Words().value(1);
  const QString argument = arguments.Words().value(2);
  if (action == u"list") {
    Print(RulesObject(context).Lines());
    return kExitOk;
  }
  if (action == u"add" && !argument.isEmpty()) return AddRule(context, argument);
  if (action == u"test" && !argument.isEmpty()) {
    return TestRules(context, argument, arguments.Has(QStringLiteral("json")));
  }
  return Complain(Ui::tr("使い方: vornctl rules list|add 条件|test ファイル|- [--json]"),
                  kExitUsage);
}

}  // namespace vorn::ctl
