#include "mail/store/erased_messages.h"

#include "mail/store/mail_row.h"
#include "storage/session/own_statement.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"

namespace vorn {

namespace {

Result<bool> HasRow(DataSession& data, const QByteArray& condition, const QVariantList& values) {
  const Result<RecordsetPtr> rows =
      AskOwn(data, "SELECT FIELD_ID FROM erased" + condition + " LIMIT 1", values);
  if (!rows) return rows.Error();
  return !(*rows)->Eof();
}

}  // namespace

Result<bool> ErasedMessages::HasAny() {
  return HasRow(data_, {}, {});
}

Result<bool> ErasedMessages::Has(const QString& messageId) {
  return HasRow(data_, " WHERE FIELD_ID = ?1", {messageId});
}

Result<QMultiHash<QByteArray, QString>> ErasedMessages::ByDigest() {
  QMultiHash<QByteArray, QString> names;
  if (!data_.OpenRecordset(QStringLiteral("SELECT FIELD_ID, HEX(DIGEST) FROM erased"),
                           CursorKind::ForwardOnly)) {
    return ReasonOf(data_);
  }
  const RecordsetPtr rows = data_.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) {
    names.insert(QByteArray::fromHex(rows->Fields(u"HEX(DIGEST)").toByteArray()),
                 MailRow(*rows).MessageId());
  }
  if (rows->Failed()) return rows->Error();
  return names;
}

Result<> ErasedMessages::NoteAlso(const QString& messageId, const QByteArray& digest) {
  const QString note = QStringLiteral(
                           "INSERT OR REPLACE INTO erased (FIELD_ID, DIGEST) SELECT %1, DIGEST "
                           "FROM erased WHERE HEX(DIGEST) = '%2' LIMIT 1")
                           .arg(QuoteSql(messageId), QString::fromLatin1(digest.toHex().toUpper()));
  return ResultOf(data_, data_.Execute(note));
}

}  // namespace vorn
