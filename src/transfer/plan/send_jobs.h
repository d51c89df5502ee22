#pragma once

#include <QSet>

#include "storage/context.h"
#include "transfer/plan/late_outcomes.h"
#include "transfer/plan/sender_choice.h"
#include "transfer/plan/waiting_messages.h"

namespace vorn {

class Account;
class AccountSessions;
class CheckJob;
class HeldWorks;
class PlanHost;
class PlannedJobs;
class Pop;
class SendItem;
struct WaitingMessage;

/// Plans send jobs and takes their steps: one message after the other, while the work of sending is
/// this program's.
class SendJobs {
 public:
  SendJobs(Context& context, Pop& pop, PlanHost& host, PlannedJobs& jobs, HeldWorks& works,
           AccountSessions& sessions)
      : context_(context),
        pop_(pop),
        host_(host),
        jobs_(jobs),
        works_(works),
        sessions_(sessions),
        senders_(context, host, jobs),
        waiting_(context, host, jobs, late_, senders_) {}

  /// Adds a job for the messages that wait, now or when their file is in use no longer.
  void Plan(const WaitingSearch& search);
  void Step(CheckJob& job);
  /// The step of a job that looks for messages in a file that was in use.
  void LookAgain(CheckJob& job) { waiting_.LookAgain(job); }
  bool HasSession(const CheckJob& job) const;
  LateOutcomes& Late() { return late_; }
  SenderChoice& Senders() { return senders_; }

 private:
  bool MaySend(CheckJob& job, const SendItem& message);
  void TellNotByItself(const Account& account);
  void TellOfNoPassword(const Account& account, const QString& sentence);
  bool TakeSending(CheckJob& job, const SendItem& message);
  void ReportDoubtful(int count);
  void BeginSending(CheckJob& job, const Account& account);
  void StartSending(CheckJob& job, SendItem& message);
  void PlanAnew(const SendItem& message);
  void LoadSending(SendItem& message, const WaitingMessage& waiting);
  void LeaveOut(CheckJob& job, const SendItem& message);
  bool IsStoredAnew(const SendItem& message);
  void FinishSending(CheckJob& job, const SendItem& message);
  void NoteRefusal(const CheckJob& job, const SendItem& message);
  void Record(const CheckJob& job, const SendItem& message);
  QString OutcomeOf(const CheckJob& job) const;

  Context& context_;
  Pop& pop_;
  PlanHost& host_;
  PlannedJobs& jobs_;
  HeldWorks& works_;
  AccountSessions& sessions_;
  LateOutcomes late_;
  SenderChoice senders_;
  WaitingMessages waiting_;
  QSet<SerialId> toldOfNoPassword_;  // accounts
};

}  // namespace vorn
