#include "mail/search/unread_count.h"

#include "mail/search/search_condition.h"
#include "storage/databases.h"
#include "storage/session/session_result.h"

namespace vorn {

Result<qint64> CountUnread(Context& context, const SerialId& folder) {
  const FolderQuery query = FolderSqlBuilder(context).Query(folder);
  if (query.IsEmpty()) return StorageError{StorageError::Kind::NotFound, {}};
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  if (!context.Data.OpenRecordset(query.Unread(), CursorKind::ForwardOnly,
                                  StatementTrust::UserCondition)) {
    return ReasonOf(context.Data);
  }
  return context.Data.Recordset()->FirstNumber();
}

QString UnreadQuestion(Context& context, const SerialId& folder) {
  return FolderSqlBuilder(context).Query(folder).Unread();
}

}  // namespace vorn
