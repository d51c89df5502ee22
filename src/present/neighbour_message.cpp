#include "present/neighbour_message.h"

#include <optional>

#include "mail/message_rows.h"
#include "objects/search_condition.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

// Messages of one moment are told apart by their identifiers.
struct Moment {
  QString time;
  QString serialId;

  QString Condition(QStringView compare) const {
    return QStringLiteral("(FIELD_TIMESTAMP %1 %2 OR (FIELD_TIMESTAMP = %2 AND SERIALID %1 %3))")
        .arg(compare, QuoteSql(time), QuoteSql(serialId));
  }
};

std::optional<Moment> MomentOf(DataSession& data, const QString& serialId) {
  const RecordsetPtr row = MessageRows(data).Of(serialId);
  if (row == nullptr || row->Eof()) return std::nullopt;
  return Moment{row->Fields(u"FIELD_TIMESTAMP").toString(), serialId};
}

RecordsetPtr Ask(DataSession& data, const QString& select) {
  const bool told =
      data.OpenRecordset(select, CursorKind::ForwardOnly, StatementTrust::UserCondition);
  return told ? data.Recordset() : nullptr;
}

// The first of the rows that the condition leaves.
QString FirstSerial(DataSession& data, const QString& rows, const QString& condition, int step) {
  const QString select =
      QStringLiteral("SELECT * FROM (%1) WHERE %2 ORDER BY FIELD_TIMESTAMP %3, SERIALID %3")
          .arg(rows, condition, step < 0 ? QStringLiteral("DESC") : QStringLiteral("ASC"));
  const RecordsetPtr found = Ask(data, select);
  return found == nullptr || found->Eof() ? QString() : found->SerialID();
}

QStringView Beyond(int step) {
  return step < 0 ? u"<" : u">";
}

int PageStep(Context& context) {
  return Settings(context).IsNewestFirst() ? -1 : 1;
}

}  // namespace

QString NeighbourMessage(Context& context, const QString& folder, const QString& search,
                         const QString& serialId, int step) {
  const FolderQuery query = FolderSqlBuilder(context).Query(folder).Searched(search);
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (query.IsEmpty() || !mail) return {};
  const auto from = MomentOf(context.Data, serialId);
  return from ? FirstSerial(context.Data, query.Listing(), from->Condition(Beyond(step)), step)
              : QString();
}

QString NextUnopened(Context& context, const QString& folder, const QString& search,
                     const QString& serialId) {
  const FolderQuery query = FolderSqlBuilder(context).Query(folder).Searched(search);
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (query.IsEmpty() || !mail) return {};
  const int step = PageStep(context);
  const QString rows = query.UnreadListing();
  if (const auto from = MomentOf(context.Data, serialId)) {
    const QString next = FirstSerial(context.Data, rows, from->Condition(Beyond(step)), step);
    if (!next.isEmpty()) return next;
  }
  const QString another = QStringLiteral("SERIALID <> ") + QuoteSql(serialId);
  return FirstSerial(context.Data, rows, another, step);
}

qint64 RowsBefore(Context& context, const QString& folder, const QString& search,
                  const QString& serialId) {
  const FolderQuery query = FolderSqlBuilder(context).Query(folder).Searched(search);
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (query.IsEmpty() || !mail) return -1;
  const auto to = MomentOf(context.Data, serialId);
  const QString itself = QStringLiteral("SERIALID = ") + QuoteSql(serialId);
  if (!to || FirstSerial(context.Data, query.Listing(), itself, 1).isEmpty()) return -1;
  const RecordsetPtr before =
      Ask(context.Data, QStringLiteral("SELECT COUNT(*) AS N FROM (%1) WHERE %2")
                            .arg(query.Listing(), to->Condition(Beyond(-PageStep(context)))));
  return before == nullptr || before->Eof() ? -1 : before->Fields(u"N").toLongLong();
}

}  // namespace vorn
