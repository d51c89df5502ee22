#include "mail/search/unread_count.h"

#include "mail/search/search_condition.h"
#include "storage/databases.h"

namespace vorn {

qint64 CountUnread(Context& context, const SerialId& folder) {
  const FolderQuery query = FolderSqlBuilder(context).Query(folder);
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (query.IsEmpty() || !mail) return -1;
  const bool counted = context.Data.OpenRecordset(query.Unread(), CursorKind::ForwardOnly,
                                                  StatementTrust::UserCondition);
  return counted ? context.Data.Recordset()->FirstNumber() : -1;
}

QString UnreadQuestion(Context& context, const SerialId& folder) {
  return FolderSqlBuilder(context).Query(folder).Unread();
}

}  // namespace vorn
