#include "mail/search/folder_count.h"

#include "storage/databases.h"
#include "storage/session/session_result.h"

namespace vorn {

Result<int> CountMessages(Context& context, const FolderQuery& query) {
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  if (!context.Data.OpenRecordset(query.Counting(), CursorKind::ForwardOnly,
                                  StatementTrust::UserCondition) ||
      context.Data.Recordset()->Failed()) {
    return ReasonOf(context.Data);
  }
  return static_cast<int>(context.Data.Recordset()->FirstNumber());
}

}  // namespace vorn
