#pragma once

#include <QSet>

#include "storage/base/serial_id.h"

namespace vorn {

class Account;
class CheckJob;
class PlanHost;
class Pop;

/// What receive jobs and send jobs have in common: sessions at an account's servers.
class AccountSessions {
 public:
  AccountSessions(Pop& pop, PlanHost& host) : pop_(pop), host_(host) {}

  /// Loads the transfer control to receive for the account.
  void LoadReceiving(const Account& account);
  /// Whether the account's receive password is known, if need be by asking for it, to
  /// receive with it or `toSend`.
  bool KnowsPassword(Account& account, bool toSend);
  void ForgetRefusedPassword(const CheckJob& job, Account& account);
  /// Records what the job's session came to as an event, where the account's sessions are.
  void Record(const CheckJob& job, const Account& account);

 private:
  Pop& pop_;
  PlanHost& host_;
  QSet<SerialId> refused_;  // accounts whose typed password a server did not take
};

}  // namespace vorn
