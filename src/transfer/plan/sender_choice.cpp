#include "transfer/plan/sender_choice.h"

#include <QScopedValueRollback>
#include <optional>

#include "mail/codec/header/address.h"
#include "objects/account.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/ui.h"
#include "transfer/plan/plan_host.h"
#include "transfer/plan/planned_jobs.h"
#include "transfer/plan/send_item.h"

namespace vorn {

// The enabled account that bears a sender's address; of several the preferred one, then the one
// that bears his name too, then the default one.
DiskPtr SenderChoice::AccountFor(const QString& addressLines) const {
  const DiskCollectionPtr accounts =
      SelectObjects(context_.Objects, *context_.Session, object_type::kAccount, kSelectEnabled);
  DiskPtr taken;
  int best = -1;
  for (const AddressEntry& entry : EntriesOfKind(addressLines, u"from")) {
    for (const DiskPtr& object : *accounts) {
      const Account account(object);
      if (account.Address() != entry.address) continue;
      const int fits = (object->Serial() == preferred_ ? 4 : 0) +
                       (account.Display() == entry.displayName ? 2 : 0) +
                       (account.IsDefault() ? 1 : 0);
      if (fits <= best) continue;
      best = fits;
      taken = object;
    }
  }
  return taken;
}

bool SenderChoice::Choose(const SerialId& serial, const QString& addressLines,
                          const QString& subject) {
  if (AccountFor(addressLines) != nullptr) return true;
  const DiskPtr chosen = AskForAccount(subject);
  if (chosen != nullptr) chosen_[serial] = chosen->Serial();
  return chosen != nullptr;
}

// Which message it is about, since it may have been waiting for long.
DiskPtr SenderChoice::AskForAccount(const QString& subject) {
  const QScopedValueRollback asking(asking_, true);
  return context_.Objects.Find(host_.ChooseAccount(
      Ui::tr("アカウントの選択"), Ui::tr("送信する際のアカウントを選択して下さい。") +
                                      QStringLiteral("\n") + Ui::tr("件名: ") + subject));
}

// Nobody asked for automatic checking, and two questions at once could not be told apart.
bool SenderChoice::MayAsk() const {
  return !asking_ && !(jobs_.RunsPeriodically() && Settings(context_).Care().asksNothingAlone);
}

void SenderChoice::GiveSenders(std::vector<SendItem>& messages) {
  std::optional<DiskPtr> answer;
  std::erase_if(messages, [&](SendItem& message) {
    message.FillEnvelope();
    if (message.Sender()) return false;
    DiskPtr account = context_.Objects.Find(chosen_.value(message.Serial()));
    const bool mayAsk = MayAsk();
    if (account == nullptr && !answer && mayAsk) answer = AskForAccount(message.Subject());
    if (account == nullptr) account = answer.value_or(nullptr);
    if (account == nullptr) {
      TellOfNoAccount(message, mayAsk);
      return true;
    }
    message.SendFrom(account);
    return false;
  });
}

void SenderChoice::TellOfNoAccount(const SendItem& message, bool repeats) {
  const bool isTold = !repeats && toldOfNoAccount_.contains(message.Serial());
  toldOfNoAccount_.insert(message.Serial());
  if (isTold) return;
  host_.AddEvent(kEventError, kEventMessage, message.Serial(), Ui::tr("システム"),
                 QStringLiteral("mailup"), Ui::tr("送信で使用するアカウントが不明です。"));
}

}  // namespace vorn
