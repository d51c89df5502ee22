#pragma once

#include <QHash>
#include <QString>
#include <vector>

#include "mail/store/send_refusals.h"
#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/databases.h"

namespace vorn {

class CheckJob;
class LateOutcomes;
class PlanHost;
class PlannedJobs;
class SendItem;
class SenderChoice;

/// Which of the messages that wait are to be sent.
struct WaitingSearch {
  SerialId serial;  ///< empty for all
  DatabaseKind db;
  QString file;
  bool isCheck;  ///< nobody asks for sending alone
};

/// Finds the messages that wait to be sent and plans each of them once.
class WaitingMessages {
 public:
  WaitingMessages(Context& context, PlanHost& host, PlannedJobs& jobs, LateOutcomes& late,
                  SenderChoice& senders)
      : context_(context), host_(host), jobs_(jobs), late_(late), senders_(senders) {}

  /// Adds a send job for them. Fails when the file is in use just now; what else may fail is told.
  Result<> Plan(const WaitingSearch& search);
  /// Adds a job that tries it again.
  void LookLater(const WaitingSearch& search);
  /// That the user is told of a refusal elsewhere.
  void NoteTold(const SerialId& serial, const SendRefusal& refusal) {
    told_[serial] = refusal.tried;
  }
  /// That job's step.
  void LookAgain(CheckJob& job);

 private:
  bool MaySendFrom(const QString& file);
  bool IsPlanned(const SerialId& serial) const;
  Result<> LeaveOutRefused(std::vector<SendItem>& messages);
  void TellRefused(const std::vector<SendItem>& messages);
  void TellUnread(const StorageError& reason);
  Result<std::vector<SendItem>> Find(const WaitingSearch& search);
  void AddSendJob(const std::vector<SendItem>& messages);

  Context& context_;
  PlanHost& host_;
  PlannedJobs& jobs_;
  LateOutcomes& late_;
  SenderChoice& senders_;
  QHash<SerialId, QString> told_;  // when what was told of as refused was tried, by message
};

}  // namespace vorn
