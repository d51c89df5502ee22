#include "mail/search/row_index.h"

#include <QStringList>
#include <algorithm>

#include "mail/store/mail_row.h"
#include "storage/sql/sql_text.h"

namespace vorn {
namespace {

constexpr qint64 kRowsPerNote = 1000;
constexpr qint64 kLongerStep = 4;

}  // namespace

RowIndex::Place RowIndex::Find(qint64 row) const {
  const auto after =
      std::upper_bound(notes_.begin(), notes_.end(), row,
                       [](qint64 wanted, const Note& note) { return wanted < note.row; });
  Note note = after == notes_.begin() ? Note{QString(), 0} : *std::prev(after);
  if (tail_ && tail_->row <= row && tail_->row > note.row) note = *tail_;
  return {note.since, row - note.row};
}

QString RowIndex::Since(const QString& since) const {
  const QString all = u'(' + select_ + u')';
  return since.isEmpty() ? all
                         : all + QStringLiteral(" WHERE FIELD_TIMESTAMP >= ") + QuoteSql(since);
}

std::optional<RecordsetPtr> RowIndex::Open(DataSession& session, const QString& columns,
                                           const QString& rest) const {
  if (!session.OpenRecordset(QStringLiteral("SELECT %1 FROM %2").arg(columns, rest),
                             CursorKind::ForwardOnly, StatementTrust::UserCondition)) {
    return std::nullopt;
  }
  return session.Recordset();
}

// The rows from one moment, or from the first row, up to another moment or the last row.
std::optional<qint64> RowIndex::CountBetween(DataSession& session, const QString& since,
                                             const QString& until) const {
  const auto count = [&](const QString& source) -> std::optional<qint64> {
    const auto rows = Open(session, QStringLiteral("COUNT(*)"), source);
    if (!rows) return std::nullopt;
    return (*rows)->FirstNumber();
  };
  if (until.isEmpty()) return count(Since(since));
  const QString limit = QStringLiteral("FIELD_TIMESTAMP < ") + QuoteSql(until);
  if (!since.isEmpty()) return count(Since(since) + QStringLiteral(" AND ") + limit);
  // Rows without a time come first.
  const auto timeless = count(Since({}) + QStringLiteral(" WHERE FIELD_TIMESTAMP IS NULL"));
  const auto timed = count(Since({}) + QStringLiteral(" WHERE ") + limit);
  if (!timeless || !timed) return std::nullopt;
  return *timeless + *timed;
}

void RowIndex::NoteFromEnd(DataSession& session, qint64 count, qint64 row) {
  const QString rest =
      Since({}) +
      QStringLiteral(" ORDER BY FIELD_TIMESTAMP DESC LIMIT 1 OFFSET %1").arg(count - 1 - row);
  const auto rows = Open(session, QStringLiteral("FIELD_TIMESTAMP"), rest);
  const QString time = rows ? MailRow(**rows).Timestamp() : QString();
  if (time.isEmpty()) return;
  if (const auto from = CountBetween(session, time, {})) tail_ = Note{time, count - *from};
}

bool RowIndex::Extend(DataSession& session) {
  if (complete_) return false;
  const Note last = notes_.empty() ? Note{QString(), 0} : notes_.back();
  QString time = last.since;
  bool atEnd = false;
  // Where many rows share one moment, a step leads nowhere: a longer one leads past them.
  for (qint64 step = kRowsPerNote; !atEnd && time == last.since; step *= kLongerStep) {
    const QString rest =
        Since(last.since) +
        QStringLiteral(" ORDER BY FIELD_TIMESTAMP ASC LIMIT 1 OFFSET %1").arg(step);
    const auto rows = Open(session, QStringLiteral("FIELD_TIMESTAMP"), rest);
    if (!rows) return false;
    atEnd = (*rows)->Eof();
    time = MailRow(**rows).Timestamp();
  }
  const auto passed = CountBetween(session, last.since, atEnd ? QString() : time);
  if (!passed) return false;
  complete_ = atEnd;
  if (atEnd) {
    count_ = last.row + *passed;
  } else {
    notes_.push_back({time, last.row + *passed});
  }
  return !atEnd;
}

}  // namespace vorn
