#include "present/unread_count.h"

#include "objects/search_condition.h"
#include "storage/databases.h"

namespace vorn {

qint64 CountUnread(Context& context, const QString& folder) {
  const QString select = FolderSqlBuilder(context).CreateFolderSql(folder);
  if (select.isEmpty() || !OpenDatabase(context, DatabaseKind::Mail)) return -1;
  // Word for word the condition of the index over such messages.
  const bool counted = context.Data.OpenRecordset(
      QStringLiteral("SELECT COUNT(*) AS N FROM (%1) WHERE CAST(SUBSTR(FIELD_FLAG, 3, 1) AS "
                     "INTEGER) = 1")
          .arg(select),
      CursorKind::ForwardOnly, StatementTrust::UserCondition);
  const qint64 count = counted ? context.Data.Recordset()->Fields(u"N").toLongLong() : -1;
  context.Data.Close();
  return count;
}

}  // namespace vorn
