#include "mail/search/folder_query.h"

#include "mail/store/message_pieces.h"
#include "storage/engine/schema.h"
#include "storage/sql/sql_text.h"

namespace vorn {
namespace {

const QString kUnopened = QString::fromUtf8(kUnopenedCondition.data(), kUnopenedCondition.size());

// The table `mail` with those messages alone. Without a limit the engine would read the whole
// folder and compare.
QString TableOf(const SerialIds& messages) {
  return QStringLiteral("(SELECT * FROM mail WHERE%1 LIMIT %2) AS mail")
      .arg(Among(messages), QString::number(messages.size()));
}

}  // namespace

FolderQuery FolderQuery::Scope(const FolderSearch& search) const {
  const bool isElsewhere = search.isEverywhere && !search.isEmpty() && !IsEmpty();
  return isElsewhere ? FolderQuery(kOutsideDust, Needs{.state = true}) : *this;
}

FolderQuery FolderQuery::Searched(const FolderSearch& search) const {
  FolderQuery query = Scope(search);
  query.search_ = search;
  return query;
}

QString FolderQuery::Listing() const {
  if (IsEmpty()) return {};
  const bool isOfHits = search_.hits && !search_.hasMore;
  const QString all =
      (needs_.folders ? QStringLiteral("SELECT mail.* FROM %1 INNER JOIN folder ON mail.SERIALID = "
                                       "folder.SERIALID WHERE ")
                      : QStringLiteral("SELECT * FROM %1 WHERE "))
          .arg(isOfHits ? TableOf(*search_.hits) : QStringLiteral("mail")) +
      condition_;
  if (search_.isEmpty() || isOfHits) return all;
  const QString text = QuoteSql(search_.text);
  return QStringLiteral("SELECT * FROM (") + all +
         QStringLiteral(") WHERE CONTAINS(FIELD_SUBJECT, ") + text +
         QStringLiteral(") OR CONTAINS(ADDRESSES(FIELD_MAILADDRESS), ") + text + u')' +
         (search_.hits ? QStringLiteral(" OR") + Among(*search_.hits) : QString());
}

QString FolderQuery::Counting() const {
  if (IsEmpty()) return {};
  return QStringLiteral("SELECT COUNT(*) FROM (") + Listing() + u')';
}

QString FolderQuery::Unread() const {
  return UnreadRows(QStringLiteral("COUNT(*)"));
}

QString FolderQuery::UnreadListing() const {
  return UnreadRows(QStringLiteral("SERIALID, FIELD_TIMESTAMP"));
}

// The engine takes the index over the unopened only where no other columns are in sight.
QString FolderQuery::UnreadRows(const QString& columns) const {
  if (IsEmpty()) return {};
  const QString rows = IsPlain()
                           ? QStringLiteral("mail WHERE (") + condition_ + QStringLiteral(") AND ")
                           : u'(' + Listing() + QStringLiteral(") WHERE ");
  return QStringLiteral("SELECT ") + columns + QStringLiteral(" FROM ") + rows + kUnopened;
}

QString FolderQuery::Identifiers(RowOrder order) const {
  if (IsEmpty()) return {};
  return QStringLiteral("SELECT SERIALID FROM (") + Listing() +
         (order == RowOrder::OldestFirst ? QStringLiteral(") ORDER BY FIELD_TIMESTAMP ASC")
                                         : QStringLiteral(") ORDER BY FIELD_TIMESTAMP DESC"));
}

std::optional<QString> FolderQuery::Column(const QString& name) const {
  if (IsEmpty() || !IsPlain()) return std::nullopt;
  return QStringLiteral("SELECT ") + name + QStringLiteral(" FROM mail WHERE ") + condition_;
}

}  // namespace vorn
