#include "mail/stored_copy.h"

#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {

bool StoredCopyIsWhole(Context& context, const QString& file, const QString& messageId) {
  if (!OpenDatabase(context, DatabaseKind::MailByPath, file)) return false;
  bool whole = false;
  if (context.Data.OpenRecordset(
          QStringLiteral("SELECT * FROM mail WHERE FIELD_ID = ") + QuoteSql(messageId),
          CursorKind::ForwardOnly)) {
    const RecordsetPtr row = context.Data.Recordset();
    whole = !row->Eof() && row->Fields(u"MAIL").isValid() && !row->Failed();
  }
  context.Data.Close();
  return whole;
}

}  // namespace vorn
