#include "mail/stored_copy.h"

#include <optional>

#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

// The source in the open file; nothing when there is none, and an invalid value when it cannot be
// read.
std::optional<QVariant> StoredSource(Context& context, const QString& messageId, bool* failed) {
  *failed = !context.Data.OpenRecordset(
      QStringLiteral("SELECT * FROM mail WHERE FIELD_ID = ") + QuoteSql(messageId),
      CursorKind::ForwardOnly);
  if (*failed) return std::nullopt;
  const RecordsetPtr row = context.Data.Recordset();
  if (row->Eof()) {
    *failed = row->Failed();
    return std::nullopt;
  }
  const QVariant source = row->Fields(u"MAIL");
  return row->Failed() ? QVariant() : source;
}

}  // namespace

bool StoredCopyIsWhole(Context& context, const QString& file, const QString& messageId) {
  if (!OpenDatabase(context, DatabaseKind::MailByPath, file)) return false;
  bool failed = false;
  const std::optional<QVariant> source = StoredSource(context, messageId, &failed);
  context.Data.Close();
  return source && source->isValid();
}

StoredCopy CompareStoredCopy(Context& context, const QString& file, const QString& messageId,
                             const QByteArray& source) {
  if (!OpenDatabase(context, DatabaseKind::MailByPath, file)) return StoredCopy::Unknown;
  bool failed = false;
  const std::optional<QVariant> stored = StoredSource(context, messageId, &failed);
  context.Data.Close();
  if (!stored) return failed ? StoredCopy::Unknown : StoredCopy::None;
  return stored->isValid() && stored->toByteArray() == source ? StoredCopy::Same
                                                              : StoredCopy::Other;
}

bool FreeMessageId(Context& context, const QString& file, const QString& messageId) {
  if (!OpenDatabase(context, DatabaseKind::MailByPath, file)) return false;
  const bool freed = context.Data.Execute(
      QStringLiteral("UPDATE mail SET FIELD_ID = FIELD_ID & '#' & SERIALID WHERE FIELD_ID = ") +
      QuoteSql(messageId));
  context.Data.Close();
  return freed;
}

}  // namespace vorn
