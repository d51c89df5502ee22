#pragma once

#include <QString>
#include <utility>

#include "storage/bags/disk.h"

namespace vorn {

/// What the session of a job comes to, by the names that the job's bag has for it. The bag of any
/// `CheckJob` is one. The texts have one thing a line.
class SessionRecord {
 public:
  SessionRecord(DiskPtr job) : job_(std::move(job)) {}

  /// Forgets what the session before came to.
  void Begin();
  /// What the event log says of it.
  QString Log() const { return job_->Text(kLog); }
  void AddLog(const QString& line);
  void AddError(const QString& line);
  bool HasError() const { return job_->Flag(kError); }
  bool IsLoginRefused() const { return job_->Flag(kLoginRefused); }
  void RefuseLogin() { job_->Let(kLoginRefused, true); }

  /// The serial identifiers of the messages that came.
  SerialIds Received() const { return SerialIdsOfLines(job_->Text(kReceived)); }
  void AddReceived(const SerialIds& messages);

  /// The recipients that the server refused, with its words.
  QString Refused() const { return job_->Text(kRefused); }
  void AddRefused(const QString& recipient);
  /// Whether the server will not take the message another time either, and its words.
  bool IsRefusedForGood() const { return !RefusedForGood().isEmpty(); }
  QString RefusedForGood() const { return job_->Text(kRefusedForGood); }
  void RefuseForGood(const QString& words) { job_->Let(kRefusedForGood, words); }
  /// Whether nobody knows if the message arrived.
  bool IsDoubtful() const { return job_->Flag(kDoubtful); }
  void Doubt() { job_->Let(kDoubtful, true); }
  /// What came of the message could not be stored. This and what follows outlives the session.
  void FailStore() { job_->Let(kStoreFailed, true); }
  bool HasStoreFailed() const { return job_->Flag(kStoreFailed); }
  /// The session is to begin once more.
  void SetAgain(bool again) { job_->Let(kAgain, again); }
  bool IsAgain() const { return job_->Flag(kAgain); }
  /// The work of receiving that was taken for it: the user may change the account meanwhile.
  QString Work() const { return job_->Text(kWork); }
  void SetWork(const QString& work) { job_->Let(kWork, work); }
  /// The account whose password the user was asked for, so as not to ask again.
  SerialId Asked() const { return SerialId(job_->Text(kAsked)); }
  void SetAsked(const SerialId& account) { job_->Let(kAsked, account.Text()); }

 private:
  static inline const QString kLog = QStringLiteral("log");
  static inline const QString kError = QStringLiteral("error");
  static inline const QString kLoginRefused = QStringLiteral("loginrefused");
  static inline const QString kReceived = QStringLiteral("messages");
  static inline const QString kRefused = QStringLiteral("refused");
  static inline const QString kRefusedForGood = QStringLiteral("refusedforgood");
  static inline const QString kDoubtful = QStringLiteral("doubtful");
  static inline const QString kStoreFailed = QStringLiteral("storefailed");
  static inline const QString kAgain = QStringLiteral("again");
  static inline const QString kWork = QStringLiteral("receivework");
  static inline const QString kAsked = QStringLiteral("asked");

  DiskPtr job_;
};

}  // namespace vorn
