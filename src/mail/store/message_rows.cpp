#include "mail/store/message_rows.h"

#include "mail/store/mail_row.h"
#include "mail/store/mail_store.h"
#include "storage/session/own_statement.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"

namespace vorn {
namespace {

const QString kUntried = QStringLiteral("SERIALID NOT IN (SELECT SERIALID FROM send_attempt)");

}  // namespace

RecordsetPtr MessageRows::Select(const QString& statement) {
  return data_.OpenRecordset(statement, CursorKind::ForwardOnly) ? data_.Recordset() : nullptr;
}

RecordsetPtr MessageRows::Where(const QString& condition) {
  return Select(QStringLiteral("SELECT * FROM mail WHERE ") + condition);
}

RecordsetPtr MessageRows::All() {
  return Select(QStringLiteral("SELECT * FROM mail"));
}

RecordsetPtr MessageRows::Names() {
  return Select(QStringLiteral("SELECT FIELD_ID FROM mail"));
}

RecordsetPtr MessageRows::Numbers() {
  return Select(QStringLiteral("SELECT rowid, SERIALID FROM mail NOT INDEXED"));
}

RecordsetPtr MessageRows::Of(const SerialId& serialId) {
  return Where(QStringLiteral("SERIALID = ") + QuoteSql(serialId));
}

RecordsetPtr MessageRows::Named(const QString& messageId) {
  return Where(QStringLiteral("FIELD_ID = ") + QuoteSql(messageId));
}

RecordsetPtr MessageRows::Untried(const SerialId& serialId) {
  return Where(kUntried + QStringLiteral(" AND SERIALID = ") + QuoteSql(serialId));
}

RecordsetPtr MessageRows::Waiting() {
  return Where(QStringLiteral("STATUS = %1").arg(kStatusWaiting));
}

RecordsetPtr MessageRows::WaitingUntried(const SerialId& serialId) {
  const QString one =
      serialId.IsEmpty() ? QString() : QStringLiteral(" AND SERIALID = ") + QuoteSql(serialId);
  return Where(QStringLiteral("STATUS = %1 AND ").arg(kStatusWaiting) + kUntried + one);
}

RecordsetPtr MessageRows::SentSince(const QString& time) {
  const QString since =
      time.isEmpty() ? QString() : QStringLiteral(" AND FIELD_TIMESTAMP >= ") + QuoteSql(time);
  return Where(QStringLiteral("STATUS = %1").arg(kStatusSent) + since +
               QStringLiteral(" ORDER BY FIELD_TIMESTAMP DESC"));
}

qint64 MessageRows::LastNumber() {
  const RecordsetPtr row = Select(QStringLiteral("SELECT MAX(rowid) FROM mail"));
  return row == nullptr || row->Eof() ? 0 : row->FirstNumber();
}

bool MessageRows::Has(const SerialId& serialId) {
  const RecordsetPtr row =
      Select(QStringLiteral("SELECT SERIALID FROM mail WHERE SERIALID = ") + QuoteSql(serialId));
  return row != nullptr && !row->Eof();
}

Result<bool> MessageRows::HasName(const QString& messageId) {
  const Result<RecordsetPtr> row =
      AskOwn(data_, "SELECT 1 FROM mail WHERE FIELD_ID = ?1", {messageId});
  if (!row) return row.Error();
  return !(*row)->Eof();
}

Result<QString> MessageRows::NameOf(qint64 row) {
  const Result<RecordsetPtr> found =
      AskOwn(data_, "SELECT FIELD_ID FROM mail WHERE ROWID = ?1", {row});
  if (!found) return found.Error();
  return MailRow(**found).MessageId();
}

Result<bool> MessageRows::HasNamePrefix(const QString& prefix) {
  const Result<RecordsetPtr> row =
      AskOwn(data_, "SELECT 1 FROM mail WHERE FIELD_ID >= ?1 AND FIELD_ID < ?2 LIMIT 1",
             {prefix, prefix + u'~'});
  if (!row) return row.Error();
  return !(*row)->Eof();
}

Result<SerialIds> MessageRows::FoldersOf(const SerialId& serialId) {
  const RecordsetPtr rows =
      Select(QStringLiteral("SELECT FOLDERID FROM folder WHERE SERIALID = ") + QuoteSql(serialId));
  if (rows == nullptr) return ReasonOf(data_);
  SerialIds folders;
  for (; !rows->Eof(); rows->MoveNext()) folders.append(SerialIdOf(rows->Fields(u"FOLDERID")));
  if (rows->Failed()) return rows->Error();
  return folders;
}

std::optional<MessagePlace> MessageRows::PlaceOf(const SerialId& serialId) {
  const RecordsetPtr row =
      Select(QStringLiteral("SELECT STATUS FROM mail WHERE SERIALID = ") + QuoteSql(serialId));
  if (row == nullptr || row->Eof()) return {};
  const StoredState state = MailRow(*row).State();
  return MessagePlace{state, FoldersOf(serialId).ValueOr({})};
}

}  // namespace vorn
