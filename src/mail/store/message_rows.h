#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "storage/base/result.h"
#include "storage/message_state.h"
#include "storage/session/data_session.h"

namespace vorn {

/// Where a message belongs, whatever its marks: its state, and the folders that it is filed in.
struct MessagePlace {
  StoredState state;
  SerialIds folders;
  bool operator==(const MessagePlace&) const = default;
};

/// Reads the rows of `mail`, and which folders messages are in, from the file that the session has
/// open. Row sets have all columns; they are null when the file cannot be asked (`ReasonOf` says
/// why), and at their end when it holds no such message.
class MessageRows {
 public:
  explicit MessageRows(DataSession& data) : data_(data) {}

  RecordsetPtr All();
  /// The identifiers of all under which they came (FIELD_ID), and no other column: an index has
  /// them.
  RecordsetPtr Names();
  /// The number of each row and its "SERIALID", from the table alone: no index is read.
  RecordsetPtr Numbers();
  RecordsetPtr Of(const SerialId& serialId);
  /// By the name under which the message came: "MessageID" of its bag, FIELD_ID of its row.
  RecordsetPtr Named(const QString& messageId);
  /// A message, whatever its state, unless an attempt to send it is noted (see `Outbox`).
  RecordsetPtr Untried(const SerialId& serialId);
  /// What waits to be sent.
  RecordsetPtr Waiting();
  /// What waits and has no such attempt: one message, or all of them.
  RecordsetPtr WaitingUntried(const SerialId& serialId = {});
  /// What was sent at that time (FIELD_TIMESTAMP) or later, the newest first; empty: at any.
  RecordsetPtr SentSince(const QString& time);

  /// The number of the row that came last; 0 without any.
  qint64 LastNumber();
  bool Has(const SerialId& serialId);
  /// Whether a message has that name; and the name of a row by its number, empty when there is
  /// none.
  Result<bool> HasName(const QString& messageId);
  Result<QString> NameOf(qint64 row);
  /// Whether a message has a name that begins so.
  Result<bool> HasNamePrefix(const QString& prefix);
  Result<SerialIds> FoldersOf(const SerialId& serialId);
  /// Nothing where there is no such message, or the file cannot be asked.
  std::optional<MessagePlace> PlaceOf(const SerialId& serialId);

 private:
  RecordsetPtr Where(const QString& condition);
  RecordsetPtr Select(const QString& statement);

  DataSession& data_;
};

}  // namespace vorn
