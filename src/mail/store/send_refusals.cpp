#include "mail/store/send_refusals.h"

#include "storage/session/own_statement.h"

namespace vorn {

Result<> SendRefusals::Note(const SerialId& serialId, const SendRefusal& refusal) {
  const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file_);
  if (!opened) return opened.Error();
  return RunOwn(context_.Data,
                "REPLACE INTO send_refusal (SERIALID, ROUTE, TRIED, REPLY) VALUES(?1, ?2, ?3, ?4)",
                {serialId.Text(), refusal.route, refusal.tried, refusal.reply});
}

Result<QHash<SerialId, SendRefusal>> SendRefusals::All() {
  const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file_);
  if (!opened) return opened.Error();
  // A cross join begins with the few refusals, and not with all messages outside the dust bin.
  const auto rows =
      AskOwn(context_.Data,
             "SELECT send_refusal.SERIALID, ROUTE, TRIED, REPLY FROM send_refusal CROSS JOIN mail "
             "ON mail.SERIALID = send_refusal.SERIALID WHERE " +
                 kOutsideDust.toLatin1(),
             {});
  if (!rows) return rows.Error();
  QHash<SerialId, SendRefusal> refusals;
  for (Recordset& row = **rows; !row.Eof(); row.MoveNext()) {
    refusals.insert(row.Serial(), {row.Fields(u"ROUTE").toString(), row.Fields(u"TRIED").toString(),
                                   row.Fields(u"REPLY").toString()});
  }
  if ((*rows)->Failed()) return (*rows)->Error();
  return refusals;
}

}  // namespace vorn
