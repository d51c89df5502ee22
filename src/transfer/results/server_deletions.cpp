#include "transfer/results/server_deletions.h"

#include <utility>

#include "storage/databases.h"
#include "storage/known_damage.h"
#include "transfer/plan/check_job.h"
#include "transfer/results/transfer_log.h"

namespace vorn {

void ServerDeletions::Begin() {
  ofNew_ = AccountDeletes();
  // With a file that is damaged, as the user knows, what reads here may not be read elsewhere.
  const auto damage = FindDamage(context_, MailDatabasePath(context_));
  ofStored_ = ofNew_ && damage && damage->parts.isEmpty();
  doomed_.clear();
  stopped_ = 0;
  released_ = 0;
}

std::optional<Account> ServerDeletions::ServedAccount() const {
  const DiskCollectionPtr accounts =
      log_.Job() != nullptr ? CheckJob(log_.Job()).Accounts() : nullptr;
  if (accounts == nullptr || accounts->IsEmpty()) return std::nullopt;
  return accounts->First();
}

bool ServerDeletions::AccountDeletes() const {
  const std::optional<Account> account = ServedAccount();
  return account && account->DeletesOnServer();
}

bool ServerDeletions::MayStillDelete() const {
  const std::optional<Account> account = ServedAccount();
  return account && context_.Objects.Find(account->Serial()) != nullptr && AccountDeletes();
}

bool ServerDeletions::GoesOn() {
  const bool goesOn = !ofNew_ || MayStillDelete();
  if (!goesOn) {
    doomed_.clear();
    stopped_ = 0;
  }
  return goesOn;
}

QStringList ServerDeletions::Release() {
  released_ = static_cast<int>(doomed_.size());
  return std::exchange(doomed_, {});
}

}  // namespace vorn
