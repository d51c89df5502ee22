#include "present/unread_count.h"

#include "objects/search_condition.h"
#include "storage/databases.h"

namespace vorn {

qint64 CountUnread(Context& context, const QString& folder) {
  const FolderQuery query = FolderSqlBuilder(context).Query(folder);
  if (query.IsEmpty() || !OpenDatabase(context, DatabaseKind::Mail)) return -1;
  const bool counted = context.Data.OpenRecordset(query.Unread(), CursorKind::ForwardOnly,
                                                  StatementTrust::UserCondition);
  const qint64 count = counted ? context.Data.Recordset()->Fields(u"N").toLongLong() : -1;
  context.Data.Close();
  return count;
}

}  // namespace vorn
