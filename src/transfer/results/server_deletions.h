#pragma once

#include <QStringList>
#include <optional>

#include "objects/account.h"
#include "storage/context.h"

namespace vorn {

class TransferLog;

/// Which messages a session will delete on the server, once what it received is durable.
class ServerDeletions {
 public:
  ServerDeletions(Context& context, const TransferLog& log) : context_(context), log_(log) {}

  /// A session begins, with the account as it is now.
  void Begin();
  /// Whether what the session stores is deleted, and what was stored before.
  bool OfNew() const { return ofNew_; }
  bool OfStored() const { return ofStored_; }

  /// A stored message is to be deleted, or is not after all.
  void Add(const QString& messageId) { doomed_.append(messageId); }
  void Spare(const QString& messageId) { doomed_.removeAll(messageId); }
  /// The same of one that a rule stopped.
  void AddStopped() { ++stopped_; }
  void SpareStopped() { --stopped_; }
  int Stopped() const { return stopped_; }

  /// Whether the user still wants what he wanted when the session began; else nothing is deleted.
  bool GoesOn();
  /// Gives the stored messages that the server is about to be told to delete.
  QStringList Release();
  /// How many it was told to delete in all.
  int CountReleased() const { return released_ + stopped_; }

 private:
  std::optional<Account> ServedAccount() const;
  bool AccountDeletes() const;
  bool MayStillDelete() const;

  Context& context_;
  const TransferLog& log_;
  bool ofNew_ = false;
  bool ofStored_ = false;
  QStringList doomed_;
  int stopped_ = 0;
  int released_ = 0;
};

}  // namespace vorn
