#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "mail/address.h"
#include "objects/object_types.h"
#include "objects/search_condition.h"
#include "storage/databases.h"
#include "storage/time_text.h"

namespace vorn::ctl {
namespace {

QString Sender(const QString& addressLines) {
  for (const QString& line : addressLines.split(kLineBreak)) {
    const AddressEntry entry = ParseAddressEntry(line);
    if (entry.kind.compare(u"FROM", Qt::CaseInsensitive) == 0) return entry.presentable;
  }
  return {};
}

void PrintRow(const Recordset& row, bool asJson) {
  const QString serialId = row.SerialID();
  const QString subject = row.Fields(u"FIELD_SUBJECT").toString();
  const QString from = Sender(row.Fields(u"FIELD_MAILADDRESS").toString());
  const QString timestamp = row.Fields(u"FIELD_TIMESTAMP").toString();
  if (!asJson) {
    Print(QStringList{serialId, GeneralTimeText(timestamp), from, subject}.join(u'\t'));
    return;
  }
  const QJsonObject object{{QStringLiteral("serialId"), serialId},
                           {QStringLiteral("subject"), subject},
                           {QStringLiteral("from"), from},
                           {QStringLiteral("timestamp"), timestamp},
                           {QStringLiteral("status"), row.Fields(u"STATUS").toInt()},
                           {QStringLiteral("flag"), row.Fields(u"FIELD_FLAG").toString()}};
  Print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

}  // namespace

int ListFolder(Context& context, const Arguments& arguments) {
  const QString name = arguments.Words().value(1);
  const QString folder = FindFolder(context, name);
  if (folder.isEmpty()) {
    return Complain(QStringLiteral("フォルダ「%1」はありません。").arg(name), kExitFailure);
  }
  const QString select = FolderSqlBuilder(context).CreateFolderSql(folder) +
                         QStringLiteral(" ORDER BY FIELD_TIMESTAMP ASC");
  if (!OpenDatabase(context, DatabaseKind::Mail) ||
      !context.Data.OpenRecordset(select, CursorKind::ForwardOnly, StatementTrust::UserCondition)) {
    return Complain(QStringLiteral("フォルダを開けません。") + context.Data.LastError().text,
                    kExitFailure);
  }
  const RecordsetPtr rows = context.Data.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) PrintRow(*rows, arguments.Has(QStringLiteral("json")));
  const bool complete = !rows->Failed();
  context.Data.Close();
  return complete ? kExitOk
                  : Complain(QStringLiteral("一覧を最後まで読み込めません。"), kExitFailure);
}

}  // namespace vorn::ctl
