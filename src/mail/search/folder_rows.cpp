#include "mail/search/folder_rows.h"

#include <QElapsedTimer>

#include "storage/session/change_mark.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"

namespace vorn {
namespace {

// So many rows are sorted faster than an index over all messages is read.
constexpr qint64 kFewRows = 5000;
constexpr qint64 kExploreMs = 8;
// Each piece is copied once for every identifier in it.
constexpr qsizetype kFewestInPiece = 400;
constexpr qsizetype kMostPieces = 400;

}  // namespace

void FolderRows::Refresh(DataSession& session) {
  const QString mark = ChangeMark(session);
  if (mark == mark_) return;
  Forget();
  mark_ = mark;
}

// The engine knows no better than to read all messages by their times when a statement asks for
// that order, even for the three in the dust bin. Where it could find the rows in an index alone, a
// look at the first of them tells whether they are few.
bool FolderRows::IsFew(DataSession& session) {
  if (probed_) return few_;
  probed_ = true;
  // Without all the columns, which no index has.
  const std::optional<QString> column = query_.Column(QStringLiteral("STATUS"));
  if (!column) return false;
  const QString some =
      QStringLiteral("SELECT 1 FROM (") + *column + QStringLiteral(") LIMIT %1").arg(kFewRows);
  const auto open = [&session](const QString& sql) {
    return session.OpenRecordset(sql, CursorKind::ForwardOnly, StatementTrust::UserCondition);
  };
  if (!open(QStringLiteral("EXPLAIN QUERY PLAN ") + some)) return false;
  for (const RecordsetPtr plan = session.Recordset(); !plan->Eof(); plan->MoveNext()) {
    const QString detail = plan->Fields(u"detail").toString();
    if (!detail.startsWith(u"SEARCH") || !detail.contains(u"COVERING INDEX")) return false;
  }
  indexed_ = true;
  if (!open(QStringLiteral("SELECT COUNT(*) FROM (") + some + u')')) return false;
  const qint64 found = session.Recordset()->FirstNumber();
  few_ = found < kFewRows;
  if (few_) count_ = found;
  return few_;
}

Result<> FolderRows::Open(DataSession& session, qint64 first, qint64 limit) {
  Refresh(session);
  if (found_) return OpenFound(session, first, limit);
  const bool few = IsFew(session);
  // From the newest on the near pages are near without notes.
  const bool isNoted = !few && order_ == RowOrder::OldestFirst;
  if (isNoted && !index_.IsComplete() && count_ && first > *count_ / 2 && first < *count_) {
    index_.NoteFromEnd(session, *count_, first);
  }
  const RowIndex::Place place = isNoted ? index_.Find(first) : RowIndex::Place{QString(), first};
  // The sign keeps the engine from reading all messages in the order of their times.
  QString sql = QStringLiteral("SELECT * FROM ") + index_.Since(place.since) +
                (few ? QStringLiteral(" ORDER BY +FIELD_TIMESTAMP ")
                     : QStringLiteral(" ORDER BY FIELD_TIMESTAMP ")) +
                (order_ == RowOrder::OldestFirst ? QStringLiteral("ASC") : QStringLiteral("DESC"));
  if (limit > 0 || place.skip > 0) {
    sql += QStringLiteral(" LIMIT %1 OFFSET %2").arg(limit > 0 ? limit : -1).arg(place.skip);
  }
  return ResultOf(
      session, session.OpenRecordset(sql, CursorKind::ForwardOnly, StatementTrust::UserCondition));
}

void FolderRows::Take(DataSession& session, const SerialIds& serialIds) {
  Refresh(session);
  found_.emplace(serialIds);
  count_ = serialIds.size();
}

// The identifiers come in pieces of text that the engine takes apart, since it takes only so many
// values one by one.
Result<> FolderRows::OpenFound(DataSession& session, qint64 first, qint64 limit) const {
  const SerialIds shown = found_->Mid(first, limit);
  const qsizetype size = qMax(kFewestInPiece, shown.size() / kMostPieces + 1);
  QStringList pieces;
  for (qsizetype at = 0; at < qMax(qsizetype{1}, shown.size()); at += size) {
    pieces.append(QStringLiteral("SELECT %1, '', %2")
                      .arg(at)
                      .arg(QuoteSql(TextsOf(shown.mid(at, size)).join(u' ') + u' ')));
  }
  const bool opened = session.OpenRecordset(
      QStringLiteral("WITH RECURSIVE found(place, one, rest) AS (%1 UNION ALL SELECT place + 1, "
                     "SUBSTR(rest, 1, INSTR(rest, ' ') - 1), SUBSTR(rest, INSTR(rest, ' ') + 1) "
                     "FROM found WHERE rest <> '') SELECT mail.* FROM found CROSS JOIN mail ON "
                     "mail.SERIALID = found.one ORDER BY found.place")
          .arg(pieces.join(QStringLiteral(" UNION ALL "))),
      CursorKind::ForwardOnly);
  return ResultOf(session, opened);
}

std::optional<qint64> FolderRows::KnownCount(DataSession& session) {
  Refresh(session);
  if (!count_ && index_.IsComplete()) count_ = index_.Count();
  return count_;
}

std::optional<qint64> FolderRows::Count(DataSession& session) {
  if (KnownCount(session) || (IsFew(session) && count_)) return count_;
  if (session.OpenRecordset(query_.Counting(), CursorKind::ForwardOnly,
                            StatementTrust::UserCondition)) {
    count_ = session.Recordset()->FirstNumber();
  }
  return count_;
}

bool FolderRows::Explore(DataSession& session) {
  // What was begun and has changed since is begun anew once the folder is shown anew.
  const bool begun = exploring_ && ChangeMark(session) != mark_;
  Refresh(session);
  if (begun) return false;
  exploring_ = true;
  if (found_) return false;
  // Where no index finds the rows, every step would read all messages. What depends on the time of
  // day does not stay where it was.
  if (IsFew(session) || !indexed_ || query_.ChangesWithTime()) return false;
  if (order_ == RowOrder::NewestFirst) {
    Count(session);
    return false;
  }
  QElapsedTimer clock;
  clock.start();
  while (index_.Extend(session)) {
    if (clock.elapsed() > kExploreMs) return true;
  }
  return false;
}

}  // namespace vorn
