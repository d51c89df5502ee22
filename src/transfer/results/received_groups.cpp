#include "transfer/results/received_groups.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "mail/store/erased_messages.h"
#include "mail/store/message_rows.h"
#include "storage/databases.h"
#include "storage/ui.h"
#include "transfer/results/known_messages.h"
#include "transfer/results/transfer_log.h"

namespace vorn {

ReceivedGroups::ReceivedGroups(Context& context, KnownMessages& known, TransferLog& log)
    : context_(context), known_(known), log_(log) {
  flushTimer_.setInterval(GroupSize::kMs);
  QObject::connect(&flushTimer_, &QTimer::timeout, &flushTimer_, [this] { Flush(); });
}

void ReceivedGroups::Begin(bool isReceiving) {
  written_ = 0;
  ends_.clear();
  hasFailed_ = false;
  if (!isReceiving) return;
  context_.Data.Group().Gather(MailDatabasePath(context_));
  // All the time, since what the user stores meanwhile is gathered as well.
  flushTimer_.start();
}

void ReceivedGroups::End() {
  flushTimer_.stop();
  Flush();
  std::ignore = context_.Data.Group().End();  // all was flushed
}

bool ReceivedGroups::Add(const SerialId& serialId, const QString& messageId, qint64 bytes) {
  unflushed_.append({serialId, messageId});
  size_.Add(bytes);
  return !size_.IsFull() || Flush();
}

void ReceivedGroups::Fail(const StorageError& reason) {
  hasFailed_ = true;
  log_.StoreFailed(Ui::tr("受信したメッセージを保存できません。サーバーには残っています。"),
                   reason);
}

bool ReceivedGroups::Flush() {
  size_.Clear();
  const QList<StoredMessage> stored = std::exchange(unflushed_, {});
  if (const Result<> written = context_.Data.Group().Flush(); !written) {
    Fail(written.Error());
    return false;
  }
  if (!stored.isEmpty() && log_.Job() != nullptr) {
    SerialIds serials;
    for (const StoredMessage& message : stored) serials.append(message.serialId);
    SessionRecord(log_.Job()).AddReceived(serials);
  }
  if (!hasFailed_) {
    const Result<> noted = known_.Store();
    // Costs fetching these once more, if all ends here.
    if (!noted) log_.ListingFailed(noted.Error());
  }
  if (!stored.isEmpty()) {
    if (ends_.isEmpty()) ends_.append(stored.first());
    ends_ = {ends_.first(), stored.last()};
  }
  log_.Counts().stored += static_cast<int>(stored.size());
  written_ += static_cast<int>(stored.size());
  return true;
}

// Programs that copy files about may put another one in the place of that which was written to.
bool ReceivedGroups::AreStillThere() {
  const auto isKnown = [this](const StoredMessage& message) {
    const OpenedDatabase opened(context_, DatabaseKind::Mail);
    if (!opened) return false;
    if (MessageRows(context_.Data).Has(message.serialId)) return true;
    // The user may have erased it meanwhile, which this file notes.
    return ErasedMessages(context_.Data).Has(message.messageId).ValueOr(false);
  };
  return std::all_of(ends_.begin(), ends_.end(), isKnown);
}

}  // namespace vorn
