#include "mail/store/send_refusals.h"

#include "storage/session_result.h"
#include "storage/sql_text.h"

namespace vorn {

Result<> SendRefusals::Note(const QString& serialId, const QString& route) {
  const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file_);
  if (!opened) return opened.Error();
  const QString note = QStringLiteral("REPLACE INTO send_refusal (SERIALID, ROUTE) VALUES(%1,%2)")
                           .arg(QuoteSql(serialId), QuoteSql(route));
  return ResultOf(context_.Data, context_.Data.Execute(note));
}

QHash<QString, QString> SendRefusals::Routes() {
  QHash<QString, QString> routes;
  const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file_);
  if (!opened ||
      !context_.Data.OpenRecordset(QStringLiteral("SELECT SERIALID, ROUTE FROM send_refusal"),
                                   CursorKind::ForwardOnly)) {
    return routes;
  }
  for (const RecordsetPtr rows = context_.Data.Recordset(); !rows->Eof(); rows->MoveNext()) {
    routes.insert(rows->SerialID(), rows->Fields(u"ROUTE").toString());
  }
  return routes;
}

}  // namespace vorn
