#pragma once

#include <QString>
#include <optional>

#include "mail/search/folder_search.h"

namespace vorn {

/// How a folder's messages follow each other.
enum class RowOrder { OldestFirst, NewestFirst };

/// Which messages a folder holds, as a question to the table `mail`. What it makes are statements,
/// most of them without an order, which may hold text written by the user
/// (`StatementTrust::UserCondition`).
class FolderQuery {
 public:
  /// What the condition of a folder goes by, beside the columns of `mail`.
  struct Needs {
    bool folders = false;  ///< columns of the table `folder`
    bool time = false;     ///< it holds for other messages as time passes
    bool state = false;    ///< it says itself whether what was thrown away is among them

    Needs& operator|=(const Needs& other) {
      folders |= other.folders;
      time |= other.time;
      state |= other.state;
      return *this;
    }
  };

  /// Of no folder.
  FolderQuery() = default;
  /// `condition` stands after WHERE.
  FolderQuery(QString condition, Needs needs)
      : condition_(std::move(condition)), needs_(needs), isOfFolder_(true) {}

  /// Whether there is no such folder: every statement is empty then.
  bool IsEmpty() const { return !isOfFolder_; }
  /// Whether it finds others as time passes, although no message changes.
  bool ChangesWithTime() const { return needs_.time; }
  /// The same, narrowed to the messages that a search finds, or what it finds everywhere; all when
  /// it is empty.
  FolderQuery Searched(const FolderSearch& search) const;
  /// Where it looks: the same, or all messages outside the dust bin.
  FolderQuery Scope(const FolderSearch& search) const;

  /// The messages with all columns.
  QString Listing() const;
  /// One row whose column N tells how many there are.
  QString Counting() const;
  /// The same of those that are not yet opened.
  QString Unread() const;
  /// Those themselves, with their identifiers and times.
  QString UnreadListing() const;
  /// The identifiers of the messages in their order.
  QString Identifiers(RowOrder order) const;
  /// The messages with one column, where an index alone may tell it; nothing where other columns or
  /// another table are needed.
  std::optional<QString> Column(const QString& name) const;

 private:
  QString UnreadRows(const QString& columns) const;
  bool IsPlain() const { return !needs_.folders && search_.isEmpty(); }

  QString condition_;
  FolderSearch search_;
  Needs needs_;
  bool isOfFolder_ = false;
};

}  // namespace vorn
