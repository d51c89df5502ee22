#pragma once

#include <QList>
#include <QTimer>

#include "storage/base/group_size.h"
#include "storage/context.h"

namespace vorn {

class KnownMessages;
class TransferLog;

/// Gathers the messages that a session stores: they reach the mail file in groups, a few times a
/// second. A group that cannot be written counts as not stored, and nothing is stored after it.
class ReceivedGroups {
 public:
  ReceivedGroups(Context& context, KnownMessages& known, TransferLog& log);

  /// A session begins; one that does not receive gathers nothing.
  void Begin(bool isReceiving);
  void End();
  /// A message has been stored, under that serial identifier. Returns false where its group cannot
  /// be written.
  bool Add(const SerialId& serialId, const QString& messageId, qint64 bytes);
  /// Writes what is gathered. False, with the failure told, when it cannot be.
  bool Flush();
  /// A message cannot be stored.
  void Fail(const StorageError& reason);
  bool HasFailed() const { return hasFailed_; }
  /// How many messages of the session have been written.
  int Written() const { return written_; }
  /// Whether they are in the mail file that is there now.
  bool AreStillThere();

 private:
  struct StoredMessage {
    SerialId serialId;
    QString messageId;
  };

  Context& context_;
  KnownMessages& known_;
  TransferLog& log_;
  QList<StoredMessage> unflushed_;
  GroupSize size_;
  QTimer flushTimer_;
  bool hasFailed_ = false;
  int written_ = 0;
  QList<StoredMessage> ends_;  // the first and the last one written
};

}  // namespace vorn
