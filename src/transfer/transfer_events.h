#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <optional>

#include "mail/mail_store.h"
#include "storage/context.h"
#include "storage/group_size.h"
#include "transfer/known_messages.h"
#include "transfer/pop_events.h"
#include "transfer/receive_stop_rules.h"

namespace vorn {

class CheckPlan;
class Pop;

/// The first panel of the main window's status bar.
class StatusPanel {
 public:
  virtual ~StatusPanel() = default;
  /// `icon` is an icon key, empty for none.
  virtual void ShowStatus(const QString& text, const QString& icon) = 0;
};

/// What a receive session came to.
struct ReceiveCounts {
  int stored = 0;
  int known = 0;    ///< stored before, not downloaded again
  int stopped = 0;  ///< by a receive-stop rule
  int sent = 0;
  int doubtful = 0;  ///< handed over without a clear answer
  int errors = 0;
};

/// The program's side of a session: decides which messages are wanted, stores what arrives, gathers
/// the job's log and shows progress. Stored messages reach the file in groups, a few times a
/// second; a group that cannot be written counts as not stored, and nothing is deleted then.
class TransferEvents : public QObject, public PopEvents {
  Q_OBJECT

 public:
  TransferEvents(Context& context, CheckPlan& plan, const Pop& pop, StatusPanel& panel,
                 QObject* parent = nullptr);

  bool MessageArrived(const QString& messageId, const QByteArray& data, bool isTornOff,
                      bool& deleteOnServer) override;
  bool BeginHandover() override;
  void MessageSent(const QByteArray& data) override;
  void HandoverEnded(HandoverOutcome outcome, const QString& reply) override;
  void RecipientRefused(const QString& address, const QString& reply) override;
  bool MailboxListed(const QString& scope,
                     const std::optional<QList<ListedMessage>>& messages) override;
  void AlreadyStored(const QString& messageId, bool& exists, bool& deleteOnServer) override;
  bool WantsHeader(const QString& messageId) override { return known_.WantsHeader(messageId); }
  bool IsStored(const QString& messageId, const QByteArray& header, bool& deleteOnServer) override;
  void TornOffAgain() override { ++tornOffInSession_; }
  bool HasDoubt(const QString& messageId) override { return known_.HasDoubt(messageId); }
  void TakeBack(const QString& messageId) override;
  void Doubted(const QString& messageId) override { known_.Doubt(messageId); }
  void StopTakenBack(StopDoubt why) override;
  void Error(int code, const QString& text) override;
  void ReceiveStopTest(const QByteArray& header, bool isTornOff, bool& stop,
                       bool& deleteOnServer) override;
  void SessionStarted() override;
  void SessionEnded() override;
  void Progress(int code, qint64 total, qint64 done) override;
  void Log(int code, const QString& text) override;
  bool WantsHeaders() override;
  bool MakeDurable() override;

  /// Since the program began.
  const ReceiveCounts& Counts() const { return counts_; }
  /// Messages deleted on the servers since the program began.
  int DeletedOnServer() const { return deleted_; }

 private:
  struct StoredMessage {
    QString serialId;
    QString messageId;
  };

  DiskPtr Account() const;
  DiskPtr Message() const;
  bool IsReceiving() const;
  void Settle(const std::function<Result<>()>& store,
              const std::function<void(const StorageError&)>& failed);
  void Doubt(Disk& job, const Disk& message, const QString& reply);
  bool DeletesOnServer() const;
  bool MayStillDelete() const;
  void KeepTornOff(const QString& messageId, const QString& storedAs, bool& deleteOnServer);
  void ListingFailed(const StorageError& reason);
  void NoteStored(const QString& messageId, bool proven, bool deleteOnServer);
  void KeepUnlessWhole(const QString& file, const QString& messageId, bool& deleteOnServer);
  void TellUnknown(const StorageError& reason);
  void StoreFailed(const QString& sentence, const StorageError& reason = {});
  void OutcomeFailed(Disk& job, const StorageError& failure);
  static void Append(Disk& job, const QString& key, const QString& line);
  void AddError(Disk& job, const QString& text);
  bool Flush();
  bool IsStillThere();
  const ReceiveStopRules& Rules();

  Context& context_;
  CheckPlan& plan_;
  const Pop& pop_;
  StatusPanel& panel_;
  MailStore store_;
  DiskPtr job_;  // that the running session serves
  ReceiveCounts counts_;
  int deleted_ = 0;
  QList<StoredMessage> unflushed_;
  GroupSize group_;
  bool flushFailed_ = false;
  bool toldOfUnknown_ = false;
  int arrivedInSession_ = 0;
  int stoppedInSession_ = 0;
  int stopDeletesInSession_ = 0;
  int tornOffInSession_ = 0;
  QList<StoredMessage> storedInSession_;  // the first and the last one
  bool deletes_ = false;                  // as the account was when the session began
  bool takesServersTime_ = false;         // when its server took a message in, in place of now
  bool deletesStored_ = false;            // also what was stored before
  KnownMessages known_;
  QStringList doomed_;  // stored messages that the session will delete on the server
  int released_ = 0;    // how many it was told to
  QString rulesText_;
  std::optional<ReceiveStopRules> rules_;
  QTimer flushTimer_;
};

}  // namespace vorn
