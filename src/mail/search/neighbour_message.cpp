#include "mail/search/neighbour_message.h"

#include <optional>

#include "mail/search/search_condition.h"
#include "mail/store/mail_row.h"
#include "mail/store/message_rows.h"
#include "objects/list_settings.h"
#include "storage/databases.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"

namespace vorn {
namespace {

// Messages of one moment are told apart by their identifiers.
struct Moment {
  QString time;
  SerialId serialId;

  QString Condition(QStringView compare) const {
    return QStringLiteral("(FIELD_TIMESTAMP %1 %2 OR (FIELD_TIMESTAMP = %2 AND SERIALID %1 %3))")
        .arg(compare, QuoteSql(time), QuoteSql(serialId));
  }
};

// Nothing where there is no such message.
Result<std::optional<Moment>> MomentOf(DataSession& data, const SerialId& serialId) {
  const RecordsetPtr row = MessageRows(data).Of(serialId);
  if (row == nullptr) return ReasonOf(data);
  if (row->Eof()) return std::optional<Moment>();
  return std::optional(Moment{MailRow(*row).Timestamp(), serialId});
}

Result<RecordsetPtr> Ask(DataSession& data, const QString& select) {
  if (!data.OpenRecordset(select, CursorKind::ForwardOnly, StatementTrust::UserCondition)) {
    return ReasonOf(data);
  }
  return data.Recordset();
}

// The first of the rows that the condition leaves; empty where it leaves none.
Result<SerialId> FirstSerial(DataSession& data, const QString& rows, const QString& condition,
                             int step) {
  const QString select =
      QStringLiteral("SELECT * FROM (%1) WHERE %2 ORDER BY FIELD_TIMESTAMP %3, SERIALID %3")
          .arg(rows, condition, step < 0 ? QStringLiteral("DESC") : QStringLiteral("ASC"));
  const Result<RecordsetPtr> found = Ask(data, select);
  if (!found) return found.Error();
  return (*found)->Serial();
}

QStringView Beyond(int step) {
  return step < 0 ? u"<" : u">";
}

int PageStep(Context& context) {
  return ListSettings(context).IsNewestFirst() ? -1 : 1;
}

}  // namespace

Result<SerialId> NeighbourMessage(Context& context, const SerialId& folder,
                                  const FolderSearch& search, const SerialId& serialId, int step) {
  const FolderQuery query = FolderSqlBuilder(context).Query(folder).Searched(search);
  if (query.IsEmpty()) return SerialId();
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  const auto from = MomentOf(context.Data, serialId);
  if (!from) return from.Error();
  if (!*from) return SerialId();
  return FirstSerial(context.Data, query.Listing(), (*from)->Condition(Beyond(step)), step);
}

Result<SerialId> NextUnopened(Context& context, const SerialId& folder, const FolderSearch& search,
                              const SerialId& serialId) {
  const FolderQuery query = FolderSqlBuilder(context).Query(folder).Searched(search);
  if (query.IsEmpty()) return SerialId();
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  const int step = PageStep(context);
  const QString rows = query.UnreadListing();
  // From one that cannot be read, as from none, it goes to any that can.
  const auto from = MomentOf(context.Data, serialId);
  if (from && *from) {
    Result<SerialId> next = FirstSerial(context.Data, rows, (*from)->Condition(Beyond(step)), step);
    if (!next || !next->IsEmpty()) return next;
  }
  const QString another = QStringLiteral("SERIALID <> ") + QuoteSql(serialId);
  return FirstSerial(context.Data, rows, another, step);
}

Result<qint64> RowsBefore(Context& context, const SerialId& folder, const FolderSearch& search,
                          const SerialId& serialId) {
  const StorageError missing{StorageError::Kind::NotFound, {}};
  const FolderQuery query = FolderSqlBuilder(context).Query(folder).Searched(search);
  if (query.IsEmpty()) return missing;
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  const auto to = MomentOf(context.Data, serialId);
  if (!to) return to.Error();
  if (!*to) return missing;
  const QString itself = QStringLiteral("SERIALID = ") + QuoteSql(serialId);
  const Result<SerialId> held = FirstSerial(context.Data, query.Listing(), itself, 1);
  if (!held) return held.Error();
  if (held->IsEmpty()) return missing;
  const Result<RecordsetPtr> before =
      Ask(context.Data, QStringLiteral("SELECT COUNT(*) FROM (%1) WHERE %2")
                            .arg(query.Listing(), (*to)->Condition(Beyond(-PageStep(context)))));
  if (!before) return before.Error();
  return (*before)->FirstNumber();
}

}  // namespace vorn
