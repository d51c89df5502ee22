#pragma once

#include <QSet>
#include <QString>

#include "storage/bags/disk.h"
#include "storage/context.h"

namespace vorn {

class Account;
class AccountSessions;
class CheckJob;
class HeldWorks;
class PlanHost;
class PlannedJobs;
class Pop;

/// Plans receive jobs and takes their steps: one account after the other, each when its work is
/// this program's.
class ReceiveJobs {
 public:
  ReceiveJobs(Context& context, Pop& pop, PlanHost& host, PlannedJobs& jobs, HeldWorks& works,
              AccountSessions& sessions)
      : context_(context),
        pop_(pop),
        host_(host),
        jobs_(jobs),
        works_(works),
        sessions_(sessions) {}

  /// Adds a job over these accounts, without those that wait to be received already; none when no
  /// account is left.
  void Add(const DiskCollection& accounts);
  void Step(CheckJob& job);

 private:
  bool WaitsToReceive(const SerialId& account) const;
  bool MayReceive(CheckJob& job, Account& account);
  void LeaveOut(CheckJob& job, const QString& sentence);
  void Start(CheckJob& job, const Account& account);
  void Finish(CheckJob& job, Account& account);

  Context& context_;
  Pop& pop_;
  PlanHost& host_;
  PlannedJobs& jobs_;
  HeldWorks& works_;
  AccountSessions& sessions_;
  QSet<SerialId> toldOfNoPassword_;  // accounts
};

}  // namespace vorn
