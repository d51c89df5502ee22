#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <vector>

#include "storage/bags/disk.h"
#include "storage/context.h"

namespace vorn {

class PlanHost;
class PlannedJobs;
class SendItem;

/// Which account sends a message.
class SenderChoice {
 public:
  SenderChoice(Context& context, PlanHost& host, const PlannedJobs& jobs)
      : context_(context), host_(host), jobs_(jobs) {}

  /// The account that sends for one of the senders among the address lines; null without one.
  DiskPtr AccountFor(const QString& addressLines) const;
  /// Of several accounts with a sender's address, this one sends from now on.
  void Prefer(const SerialId& account) { preferred_ = account; }
  /// Whether there is one, or the user chooses an account for that message, which then counts until
  /// the program ends. False when he does not.
  bool Choose(const SerialId& serial, const QString& addressLines, const QString& subject);
  /// Gives each message of a job its account, and those without one what the user chooses once for
  /// all of them. Leaves out those of which nobody knows by what account, which is told.
  void GiveSenders(std::vector<SendItem>& messages);

 private:
  DiskPtr AskForAccount(const QString& subject);
  bool MayAsk() const;
  void TellOfNoAccount(const SendItem& message, bool repeats);

  Context& context_;
  PlanHost& host_;
  const PlannedJobs& jobs_;
  QHash<SerialId, SerialId> chosen_;  // accounts, by the messages that they were chosen for
  QSet<SerialId> toldOfNoAccount_;    // messages
  SerialId preferred_;
  bool asking_ = false;
};

}  // namespace vorn
