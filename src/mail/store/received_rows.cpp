#include "mail/store/received_rows.h"

#include "storage/message_state.h"
#include "storage/session/own_statement.h"

namespace vorn {

Result<> ReceivedRows::Read(
    qint64 after,
    const std::function<void(qint64 row, const QByteArray& digest, const QString& subject)>& tell) {
  const Result<RecordsetPtr> asked = AskOwn(
      data_,
      "SELECT M.ROWID AS N, COALESCE(S.DIGEST, L.DIGEST) AS D, M.FIELD_SUBJECT AS T FROM mail M "
      "JOIN long_binary S ON S.ID = M.MAIL LEFT JOIN late_digest L ON L.ID = M.MAIL WHERE M.ROWID "
      "> ?1 AND ABS(M.STATUS) = " +
          QByteArray::number(kStatusReceived),
      {after});
  if (!asked) return asked.Error();
  Recordset& rows = **asked;
  for (; !rows.Eof(); rows.MoveNext()) {
    tell(rows.Fields(u"N").toLongLong(), rows.Fields(u"D").toByteArray(),
         rows.Fields(u"T").toString());
  }
  if (rows.Failed()) return rows.Error();
  return {};
}

Result<SerialId> ReceivedRows::Of(qint64 identity) {
  const Result<RecordsetPtr> row =
      AskOwn(data_,
             "SELECT SERIALID FROM received_identity WHERE IDENTITY = ?1 AND EXISTS (SELECT 1 FROM "
             "mail WHERE mail.SERIALID = received_identity.SERIALID AND ABS(STATUS) = " +
                 QByteArray::number(kStatusReceived) + ')',
             {identity});
  if (!row) return row.Error();
  return (*row)->Serial();
}

Result<> ReceivedRows::Note(qint64 identity, const SerialId& serialId) {
  return RunOwn(data_, "INSERT OR REPLACE INTO received_identity VALUES (?1, ?2)",
                {identity, serialId.Text()});
}

}  // namespace vorn
