#include "present/unread_count.h"

#include "objects/search_condition.h"
#include "storage/databases.h"

namespace vorn {

namespace {

// Word for word the condition of the index over such messages.
const QString kUnread = QStringLiteral("CAST(SUBSTR(FIELD_FLAG, 3, 1) AS INTEGER) = 1");
const QString kAll = QStringLiteral("SELECT * FROM mail WHERE ");

// The engine takes that index only where no other columns are in sight.
QString CountingSelect(const QString& select) {
  const QString count = QStringLiteral("SELECT COUNT(*) AS N FROM ");
  if (!select.startsWith(kAll)) return count + u'(' + select + QStringLiteral(") WHERE ") + kUnread;
  return count + QStringLiteral("mail WHERE (%1) AND ").arg(select.mid(kAll.size())) + kUnread;
}

}  // namespace

qint64 CountUnread(Context& context, const QString& folder) {
  const QString select = FolderSqlBuilder(context).CreateFolderSql(folder);
  if (select.isEmpty() || !OpenDatabase(context, DatabaseKind::Mail)) return -1;
  const bool counted = context.Data.OpenRecordset(CountingSelect(select), CursorKind::ForwardOnly,
                                                  StatementTrust::UserCondition);
  const qint64 count = counted ? context.Data.Recordset()->Fields(u"N").toLongLong() : -1;
  context.Data.Close();
  return count;
}

}  // namespace vorn
