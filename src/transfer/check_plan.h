#pragma once

#include <QDeadlineTimer>
#include <QHash>
#include <QSet>
#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "storage/context.h"
#include "storage/databases.h"
#include "storage/result.h"
#include "storage/work_lock.h"

namespace vorn {

class Account;
class CheckJob;
class Outbox;
class Pop;
class SendItem;
struct AccountServer;
struct WaitingMessage;

/// What the check plan asks of the program around it.
class PlanHost {
 public:
  virtual ~PlanHost() = default;
  /// Queues a window request.
  virtual void PostRequest(const DiskPtr& request) = 0;
  /// Records an event. `level` 0 is information, 1 an error; `mode` 0 refers to an object.
  virtual void AddEvent(int level, int mode, const QString& reference, const QString& title,
                        const QString& category, const QString& text) = 0;
  /// The Tools menu's first entry, send and receive messages.
  virtual void SendAndReceive() = 0;
  /// Asks the user for the account to send with; its serial identifier, empty when he declines.
  virtual QString ChooseAccount(const QString& title, const QString& prompt) = 0;
  /// Asks the user for an account's receive password, which is not saved; empty when he declines.
  virtual QString AskPassword(const QString& account) = 0;
  /// Work has to wait for another program; told once for each wait, with who it is, and again, with
  /// an empty sentence, when it waits no longer.
  virtual void WorkIsHeld(const QString& sentence) = 0;
};

/// Bits of `CreateMessagePlan`.
enum PlanFlag { kPlanReceive = 1, kPlanSend = 2, kPlanPeriodic = 4 };

/// Decides when mail is received and drives the transfer control through one session at a time.
/// Work is a list of jobs, bags in plan order; a timer calls `Tick` every 100 milliseconds.
class CheckPlan {
 public:
  CheckPlan(Context& context, Pop& pop, PlanHost& host)
      : context_(context), pop_(pop), host_(host) {}

  /// Adds jobs: `kPlanPeriodic` rebuilds the periodic job from the settings, `kPlanReceive` adds a
  /// receive job over every enabled account, `kPlanSend` a send job for the messages that wait in
  /// the database `db` and `file` name; with `serial` only for that one.
  void CreateMessagePlan(int flags, const QString& serial = {},
                         DatabaseKind db = DatabaseKind::Mail, const QString& file = {});
  /// Whether an account sends for the senders among the address lines, or the user chooses one for
  /// that message, which then counts until the program ends. False when he does not.
  bool ChooseSender(const QString& serial, const QString& addressLines, const QString& subject);
  /// Adds a receive job over these accounts, without those that wait to be received already; none
  /// when no account is left.
  void AddReceiveJob(const DiskCollection& accounts);
  /// Advances every job that is due by one step.
  void Tick();

  DiskPtr Job(const QString& serialId) const { return jobs_.Find(serialId); }
  bool IsEmpty() const { return jobs_.IsEmpty(); }
  /// Whether there is anything to cancel: a job that runs or waits, other than automatic checking.
  bool HasWork() const;
  /// Whether a message is being sent or planned to be.
  bool IsSending() const;
  /// Ends the running session and whatever else was planned; automatic checking goes on. What the
  /// session came to is recorded by the next tick.
  void Cancel();
  /// Lets a send job go on only when what came of its message is stored, for which the file is in
  /// use now: `store` is tried at each tick, and when it has not worked for long, `failed` is told.
  void StoreLater(const CheckJob& job, std::function<Result<>()> store,
                  std::function<void(const StorageError&)> failed);
  /// Begins the session of a send job's message again when it has ended, since its file is in use
  /// now. False when that has been so for long.
  bool HandOverLater(const CheckJob& job);
  /// Forgets all jobs, for the end of the program.
  void Clear();

 private:
  void RebuildPeriodicJob();
  QString NewJobSerial() const;
  void Run(CheckJob& job);
  void Advance(CheckJob job);
  void RecordEnded();
  bool WaitsToReceive(const QString& account) const;
  void EndWait(CheckJob& job);
  bool HasSession(const CheckJob& job) const;
  bool SendingHasSession(const CheckJob& job) const;
  bool MaySend(const CheckJob& job, const SendItem& message);
  /// Whether the work is this program's alone by now; else it is tried again at the next tick.
  bool TakeWork(const QString& work, CheckJob& job);
  void ReleaseIdleWork();
  void ReceiveStep(CheckJob& job);
  void LeaveOutReceiving(CheckJob& job, const QString& sentence);
  bool MayReceive(CheckJob& job, Account& account);
  void StartReceiving(CheckJob& job, const Account& account);
  /// Whether the account's receive password is known, if need be by asking for it.
  bool KnowsPassword(Account& account);
  void ForgetRefusedPassword(const CheckJob& job, Account& account);
  void FinishReceiving(CheckJob& job, Account& account);
  void LoadServer(const AccountServer& server);
  void LoadReceiving(const Account& account);
  /// Which of the messages that wait are to be sent.
  struct WaitingSearch {
    QString serial;  ///< empty for all
    DatabaseKind db;
    QString file;
    bool isCheck;  ///< nobody asks for sending alone
  };
  void AddSendJob(std::vector<SendItem>& messages);
  bool MaySendFrom(const QString& file);
  /// Fails when the file is in use just now; what else may fail is told.
  Result<> PlanWaiting(const WaitingSearch& search);
  void LookLater(const WaitingSearch& search);
  void LookAgain(CheckJob& job);
  void TellUnread(const StorageError& reason);
  Result<> FindWaiting(const WaitingSearch& search, std::vector<SendItem>& messages);
  void LeaveOutRefused(std::vector<SendItem>& messages);
  bool IsPlanned(const QString& serial) const;
  DiskPtr AccountFor(const QString& addressLines) const;
  DiskPtr AskForAccount(const QString& subject);
  /// Gives a message without an account the chosen one; false when there is none.
  bool UseChosenAccount(SendItem& message, DiskPtr& chosen, bool& asked);
  void SendStep(CheckJob& job);
  bool TakeSending(CheckJob& job, const SendItem& message);
  bool OutcomeIsStored(const CheckJob& job);
  void BeginSending(CheckJob& job, const Account& account);
  void StartSending(CheckJob& job, SendItem& message);
  void PlanAnew(const SendItem& message);
  bool IsStoredAnew(const SendItem& message);
  void LoadSending(SendItem& message, const WaitingMessage& waiting);
  void LeaveOut(CheckJob& job, const SendItem& message);
  void FinishSending(CheckJob& job, const SendItem& message);
  void ReportDoubtful(int count);
  void RecordOutcome(const CheckJob& job, const SendItem& message);
  void RecordSession(const CheckJob& job, const Account& account);

  Context& context_;
  Pop& pop_;
  PlanHost& host_;
  DiskCollection jobs_;
  std::map<QString, std::unique_ptr<WorkLock>> works_;  // that are taken, or waited for
  struct Unstored {
    std::function<Result<>()> store;
    std::function<void(const StorageError&)> failed;
    QDeadlineTimer limit;
  };
  std::map<QString, Unstored> unstored_;  // by the job; also waiting messages that are unread yet
  std::map<QString, QDeadlineTimer> handovers_;  // that wait for their file, by the job
  QHash<QString, QString> chosen_;  // accounts, by the messages that they were chosen for
  QSet<QString> toldOfNoAccount_;   // messages
  QSet<QString> toldOfNoPassword_;  // accounts
  bool asking_ = false;
  bool runsPeriodically_ = false;
  bool ticking_ = false;  // a question to the user runs the event loop, and with it the timer
  QString advancing_;     // the job whose step that is
};

}  // namespace vorn
