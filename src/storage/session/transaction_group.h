#pragma once

#include <QElapsedTimer>
#include <QString>
#include <memory>
#include <optional>

#include "storage/base/result.h"

namespace vorn {

class Connection;

/// Transactions on one file that are gathered and reach it together: storing thousands of messages
/// then writes each page once. The session sees them at once, others after the flush. Any other
/// writing takes them to the file first, so that what a user does meanwhile is never undone with
/// them. A rollback undoes all that was gathered, and the next flush reports it: undoing one
/// transaction alone would cost every other one the encryption of each page that it touches.
class TransactionGroup {
 public:
  /// From here on what `DataSession::BeginGathered` begins on the file at `path` is gathered, until
  /// `End`.
  void Gather(const QString& path) { path_ = path; }
  /// Writes what was gathered. On failure all of it was undone.
  Result<> Flush();
  /// The same before something is read that may be damaged, and would take it along. Whoever
  /// gathers learns of a failure by the next `Flush` as well.
  Result<> FlushForReading();
  Result<> End();

  // For the session.

  bool Gathers(const QString& path) const { return !path_.isEmpty() && path == path_; }
  /// Whether what was gathered is open on that connection.
  bool IsOpenOn(const std::shared_ptr<Connection>& connection) const {
    return group_ != nullptr && group_ == connection;
  }
  /// Begins a gathered transaction. False, with the reason at the connection, when that fails.
  [[nodiscard]] bool Begin(const std::shared_ptr<Connection>& connection);
  void Commit() { --depth_; }
  /// How many gathered transactions are open inside each other.
  int Depth() const { return depth_; }
  /// Another writing begins on the connection: unless it does so inside a gathered transaction,
  /// what was gathered goes to the file first.
  void MakeWay(const std::shared_ptr<Connection>& connection);
  /// All that was gathered has been undone.
  void NoteUndone(const StorageError& reason);

 private:
  QString path_;
  std::shared_ptr<Connection> group_;  // while its transaction is open
  int depth_ = 0;
  std::optional<StorageError> undone_;  // why, until it is reported
  QElapsedTimer sincePause_;            // for others, between two groups
};

}  // namespace vorn
