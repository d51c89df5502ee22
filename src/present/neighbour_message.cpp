#include "present/neighbour_message.h"

#include "mail/message_rows.h"
#include "objects/search_condition.h"
#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

QString FirstSerial(DataSession& data, const QString& select) {
  if (!data.OpenRecordset(select, CursorKind::ForwardOnly, StatementTrust::UserCondition))
    return {};
  const RecordsetPtr rows = data.Recordset();
  return rows->Eof() ? QString() : rows->SerialID();
}

}  // namespace

QString NeighbourMessage(Context& context, const QString& folder, const QString& search,
                         const QString& serialId, int step) {
  const FolderQuery query = FolderSqlBuilder(context).Query(folder).Searched(search);
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (query.IsEmpty() || !mail) return {};
  DataSession& data = context.Data;
  QString neighbour;
  const RecordsetPtr row = MessageRows(data).Of(serialId);
  if (row != nullptr && !row->Eof()) {
    const QString time = QuoteSql(row->Fields(u"FIELD_TIMESTAMP").toString());
    const QString order = step < 0 ? QStringLiteral("DESC") : QStringLiteral("ASC");
    const QString beyond = step < 0 ? QStringLiteral("<") : QStringLiteral(">");
    // Messages of one moment are told apart by their identifiers.
    neighbour = FirstSerial(
        data, QStringLiteral("SELECT * FROM (%1) WHERE FIELD_TIMESTAMP %2 %3 OR (FIELD_TIMESTAMP = "
                             "%3 AND SERIALID %2 %4) ORDER BY FIELD_TIMESTAMP %5, SERIALID %5")
                  .arg(query.Listing(), beyond, time, QuoteSql(serialId), order));
  }
  return neighbour;
}

}  // namespace vorn
