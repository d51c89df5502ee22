#pragma once

#include <QString>

#include "objects/folder_query.h"
#include "present/row_index.h"
#include "storage/data_session.h"

namespace vorn {

/// How a folder's messages follow each other.
enum class RowOrder { OldestFirst, NewestFirst };

/// The messages of a folder in the order of its pages. It remembers what it has found
/// out about them as long as the database stays as it is.
class FolderRows {
 public:
  explicit FolderRows(const FolderQuery& query = {}, RowOrder order = RowOrder::OldestFirst)
      : query_(query), order_(order), index_(query.Listing()) {}

  // Each works on the open database.

  /// Makes the rows from the one numbered `first`, counted from 0, the session's result set, at
  /// most `limit` of them unless it is 0.
  bool Open(DataSession& session, qint64 first, qint64 limit);
  /// How many there are; -1 after an error.
  qint64 Count(DataSession& session);
  /// How many there are, as far as that is known without counting; else -1.
  qint64 KnownCount(DataSession& session);
  /// Finds out more about where the rows stand, for some milliseconds; false when there is nothing
  /// more to find out.
  bool Explore(DataSession& session);

 private:
  void Refresh(DataSession& session);
  bool IsFew(DataSession& session);

  FolderQuery query_;
  RowOrder order_;
  RowIndex index_;
  QString mark_;  // the state of the database that everything below is about
  qint64 count_ = -1;
  bool probed_ = false;
  bool few_ = false;
  bool indexed_ = false;  // an index alone finds the rows
  bool exploring_ = false;
};

}  // namespace vorn
