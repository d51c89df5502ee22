#pragma once

#include <QString>
#include <utility>

#include "storage/bags/disk.h"

namespace vorn {

/// How far a job has come with the account or message that it serves.
enum class JobStep {
  Waits = 0,
  /// Of a receive job: its session has begun, or the account is left out. Of a send job: its turn
  /// has come, and before its own session there may be one that only logs in.
  Begun = 1,
  Sent = 2,  ///< the session of its message has begun
};

/// A job of the check plan, by the names that its bag has for what it holds: what is to be done,
/// when, for whom, and how far it has come. What its session comes to is a `SessionRecord`. The bag
/// of any job is one.
class CheckJob {
 public:
  enum class Mode {
    Periodic,  ///< checks automatically, again and again
    Receive,
    Send,
    Look,  ///< for messages that wait in a file that was in use
  };

  CheckJob(DiskPtr bag) : bag_(std::move(bag)) {}
  /// Jobs that are due now. `serial` is the new job's identifier.
  static CheckJob Periodic(const SerialId& serial, int minutes);
  /// `isUnasked`: automatic checking wants it, and the user is asked nothing.
  static CheckJob Receive(const SerialId& serial, const DiskCollectionPtr& accounts,
                          bool isUnasked);
  static CheckJob Send(const SerialId& serial, const DiskCollectionPtr& messages, bool isUnasked);
  static CheckJob Look(const SerialId& serial, bool isPeriodic);

  const DiskPtr& Bag() const { return bag_; }
  SerialId Serial() const { return bag_->Serial(); }
  bool Is(Mode mode) const;
  /// The accounts that a receive job still has to serve; null for another job.
  DiskCollectionPtr Accounts() const { return bag_->Collection(kAccounts); }
  /// The messages that a send job still has to send; null for another job.
  DiskCollectionPtr Messages() const { return bag_->Collection(kMessages); }

  /// `now` is the session's current time (`DataSession::Now`).
  bool IsDue(const QString& now) const;
  /// It has run and runs again after its interval.
  void RunAgain() { bag_->Let(kUpdate, true); }
  bool RunsAgain() const { return bag_->Flag(kUpdate); }
  void Reschedule(const QString& now);

  JobStep Step() const { return static_cast<JobStep>(bag_->Number(kProcess)); }
  void SetStep(JobStep step) { bag_->Let(kProcess, static_cast<int>(step)); }
  /// The user cancelled it; what it has begun is still recorded.
  void Stop() { bag_->Let(kStop, true); }
  bool IsStopped() const { return bag_->Flag(kStop); }
  /// It is done with, and goes after this step.
  void End() { bag_->Let(kDelete, true); }
  bool HasEnded() const { return bag_->Flag(kDelete); }

  /// Whether it waits for another program; true when that is new.
  bool SetHeld(bool isHeld);
  bool IsUnasked() const { return bag_->Flag(kUnasked); }
  /// The user wants it as well.
  void BeAsked() { bag_->Let(kUnasked, false); }
  bool IsPeriodic() const { return bag_->Flag(kPeriodic); }

 private:
  static CheckJob New(const SerialId& serial, Mode mode);

  static inline const QString kMode = QStringLiteral("mode");
  static inline const QString kDayTime = QStringLiteral("daytime");
  static inline const QString kInterval = QStringLiteral("interval");
  static inline const QString kAccounts = QStringLiteral("account");
  static inline const QString kMessages = QStringLiteral("message");
  static inline const QString kUpdate = QStringLiteral("update");
  static inline const QString kProcess = QStringLiteral("process");
  static inline const QString kStop = QStringLiteral("stop");
  static inline const QString kDelete = QStringLiteral("delete");
  static inline const QString kHeld = QStringLiteral("held");
  static inline const QString kUnasked = QStringLiteral("unasked");
  static inline const QString kPeriodic = QStringLiteral("periodic");

  DiskPtr bag_;
};

}  // namespace vorn
