#pragma once

#include <QStringList>
#include <optional>

#include "mail/search/compact_ids.h"
#include "mail/search/folder_query.h"
#include "mail/search/row_index.h"
#include "storage/base/result.h"
#include "storage/session/data_session.h"

namespace vorn {

/// The messages of a folder in the order of its pages. It remembers what it has found
/// out about them as long as the database stays as it is.
class FolderRows {
 public:
  explicit FolderRows(const FolderQuery& query = {}, RowOrder order = RowOrder::OldestFirst)
      : query_(query), order_(order), index_(query.Listing()) {}

  // Each works on the open database.

  /// Makes the rows from the one numbered `first`, counted from 0, the session's result set, at
  /// most `limit` of them unless it is 0.
  Result<> Open(DataSession& session, qint64 first, qint64 limit);
  /// How many there are; nothing after an error.
  std::optional<qint64> Count(DataSession& session);
  /// How many there are, as far as that is known without counting.
  std::optional<qint64> KnownCount(DataSession& session);
  /// The question for the identifiers of all of them in their order, to be asked elsewhere where it
  /// takes long, and its answer: with it nothing more is asked as long as the database stays as it
  /// is.
  QString Question() const { return query_.Identifiers(order_); }
  void Take(DataSession& session, const SerialIds& serialIds);
  /// Forgets everything.
  void Forget() { *this = FolderRows(query_, order_); }
  /// Finds out more about where the rows stand, for some milliseconds; false when there is nothing
  /// more to find out.
  [[nodiscard]] bool Explore(DataSession& session);

 private:
  void Refresh(DataSession& session);
  Result<> OpenFound(DataSession& session, qint64 first, qint64 limit) const;
  bool IsFew(DataSession& session);

  FolderQuery query_;
  RowOrder order_;
  RowIndex index_;
  QString mark_;  // the state of the database that everything below is about
  std::optional<qint64> count_;
  bool probed_ = false;
  bool few_ = false;
  bool indexed_ = false;  // an index alone finds the rows
  bool exploring_ = false;
  std::optional<CompactIds> found_;  // all of them, where they were asked for elsewhere
};

}  // namespace vorn
