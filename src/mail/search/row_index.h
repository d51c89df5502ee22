#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "storage/session/data_session.h"

namespace vorn {

/// Where the rows of a long result set stand in time, noted at every thousandth row or so. Any page
/// of it can then be read from the note before it instead of from the first row. It is built step
/// by step, so that nobody waits for it.
class RowIndex {
 public:
  /// A row's place: the rows that are not older than `since` (all of them when it is empty), less
  /// the first `skip`.
  struct Place {
    QString since;
    qint64 skip = 0;
  };

  /// `select` lists the rows, in any order; its table has the column FIELD_TIMESTAMP.
  explicit RowIndex(QString select = {}) : select_(std::move(select)) {}

  /// The place of a row, counted from 0. True at any time, the nearer the further the index has
  /// grown.
  Place Find(qint64 row) const;
  /// The rows of `select` not older than `since`, as a source of a FROM clause.
  QString Since(const QString& since) const;
  /// Notes one more row of the open database; false when there is nothing more to note, or after
  /// an error.
  [[nodiscard]] bool Extend(DataSession& session);
  /// Notes the row numbered `row` from the end, where there are `count` rows: for a page near the
  /// end of a list that is not noted yet.
  void NoteFromEnd(DataSession& session, qint64 count, qint64 row);
  bool IsComplete() const { return complete_; }
  /// The number of rows, once it is complete.
  qint64 Count() const { return count_; }

 private:
  // The first of the rows of one moment.
  struct Note {
    QString since;
    qint64 row;
  };

  std::optional<RecordsetPtr> Open(DataSession& session, const QString& columns,
                                   const QString& rest) const;
  std::optional<qint64> CountBetween(DataSession& session, const QString& since,
                                     const QString& until) const;

  QString select_;
  std::vector<Note> notes_;
  std::optional<Note> tail_;  // beyond them
  bool complete_ = false;
  qint64 count_ = 0;
};

}  // namespace vorn
