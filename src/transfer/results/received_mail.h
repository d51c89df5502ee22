#pragma once

#include <optional>

#include "mail/store/mail_store.h"
#include "storage/context.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/results/known_messages.h"
#include "transfer/results/received_groups.h"
#include "transfer/results/server_deletions.h"
#include "transfer/results/told_stops.h"
#include "transfer/rules/current_stop_rules.h"

namespace vorn {

class Pop;
class TransferLog;

/// Decides which messages of a mailbox a session fetches, stores what arrives, and which of them
/// are deleted on the server. Nothing is deleted where a message could not be stored.
class ReceivedMail : public RetrievalEvents {
 public:
  ReceivedMail(Context& context, const Pop& pop, TransferLog& log);

  /// The session of the log's job begins and ends; one that only sends has the same ends.
  void Begin();
  void End();

  std::optional<ServerCopy> MessageArrived(const QString& messageId, const QByteArray& data,
                                           bool isTornOff) override;
  bool MailboxListed(const QString& scope,
                     const std::optional<QList<ListedMessage>>& messages) override;
  std::optional<ServerCopy> AlreadyStored(const QString& messageId) override;
  bool WantsHeader(const QString& messageId) override { return known_.WantsHeader(messageId); }
  std::optional<ServerCopy> StoredByHeader(const QString& messageId,
                                           const QByteArray& header) override;
  void TornOffAgain() override { ++tornOff_; }
  std::optional<ServerCopy> ReceiveStopTest(const QByteArray& header, bool isTornOff) override;
  bool HasDoubt(const QString& messageId) override { return known_.HasDoubt(messageId); }
  void TakeBack(const QString& messageId) override;
  void Doubted(const QString& messageId) override { known_.Doubt(messageId); }
  void StopTakenBack(StopDoubt why) override;
  bool WantsHeaders() override { return !rules_.Get().IsEmpty(); }
  bool MakeDurable() override;

 private:
  bool IsReceiving() const;
  void Describe(Disk& message, const QString& messageId, const QByteArray& data) const;
  struct Stored {
    MailStore::Received received;
    QString storedAs;  // the name of the one that was there already
  };
  Result<Stored> Store(Disk& message, const QString& messageId, const QByteArray& data,
                       bool isTornOff);
  std::nullopt_t GiveUp(const StorageError& reason);
  ServerCopy KeepTornOff(const QString& messageId, const QString& storedAs);
  ServerCopy NoteStored(const QString& messageId, bool proven, ServerCopy copy);
  ServerCopy KeepUnlessWhole(const QString& file, const QString& messageId, ServerCopy copy);
  void TellUnknown(const StorageError& reason);

  Context& context_;
  const Pop& pop_;
  TransferLog& log_;
  MailStore store_;
  KnownMessages known_;
  ReceivedGroups groups_;
  ServerDeletions deletions_;
  CurrentStopRules rules_;
  ToldStops toldStops_;
  // Of the session.
  bool takesServersTime_ = false;  // when its server took a message in, in place of now
  bool toldOfUnknown_ = false;
  int stopped_ = 0;  // that nobody has been told of
  int tornOff_ = 0;
};

}  // namespace vorn
