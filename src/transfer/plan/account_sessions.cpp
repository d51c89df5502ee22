#include "transfer/plan/account_sessions.h"

#include "objects/account.h"
#include "transfer/control/pop.h"
#include "transfer/plan/check_job.h"
#include "transfer/plan/plan_host.h"
#include "transfer/plan/session_record.h"

namespace vorn {

void AccountSessions::LoadReceiving(const Account& account) {
  pop_.Target = account.Incoming();
  pop_.Mode = account.Protocol() == InProtocol::Apop ? kPopReceiveApop : kPopReceive;
  pop_.LoginOnly = false;
}

bool AccountSessions::KnowsPassword(Account& account, bool toSend) {
  if (account.HasCredentials()) return true;
  const bool wasRefused = refused_.remove(account.Serial());
  account.SetPassword(host_.AskPassword({account.Name(), toSend, wasRefused}));
  return account.HasCredentials();
}

// A password that the server refused and that is not stored was a slip of the keys, or is one by
// now.
void AccountSessions::ForgetRefusedPassword(const CheckJob& job, Account& account) {
  if (SessionRecord(job.Bag()).IsLoginRefused() && !account.SavesPassword()) {
    account.SetPassword(QString());
    refused_.insert(account.Serial());
  }
}

void AccountSessions::Record(const CheckJob& job, const Account& account) {
  const SessionRecord record(job.Bag());
  const bool isLeftOut = job.IsUnasked() && record.Log().isEmpty() && !account.HasCredentials();
  if (!account.LogsEvents() || isLeftOut) return;
  host_.AddEvent(record.HasError() ? kEventError : kEventInformation, kEventObject,
                 account.Serial(), account.Name(), QStringLiteral("account"), record.Log());
}

}  // namespace vorn
