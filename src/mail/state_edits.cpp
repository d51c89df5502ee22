#include "mail/state_edits.h"

#include <utility>

#include "mail/codec/mime/flag_string.h"
#include "mail/store/message_bag.h"

namespace vorn {

void StateEdits::Begin(const DiskPtr& request) {
  request_ = request;
  wasDust_ = MessageBag(*request_).IsDust();
  changed_ = {};
}

void StateEdits::ToggleDust() {
  const MessageBag bag(*request_);
  MessageBag::SetState(*request_, {bag.Status(), !bag.IsDust()});
  changed_ |= kStateStatus;
}

void StateEdits::SetFolders(const SerialIds& folders) {
  MessageBag::SetFolders(*request_, folders);
  changed_ |= kStateFolders;
}

void StateEdits::SetFlag(FlagPosition place, const QString& value) {
  MessageBag::SetFlags(*request_, MessageBag(*request_).Flags().With(place, value));
}

void StateEdits::FollowStar(bool star) {
  SetFlag(kFlagStar, star ? QStringLiteral("1") : QStringLiteral("0"));
}

// The automatic choice leaves the stored one as it was.
void StateEdits::KeepCode(CharsetChoice charset) {
  SetFlag(kFlagCode, QString::number(static_cast<int>(charset)));
  changed_ |= kStateFlag;
}

std::optional<bool> StateEdits::Dust() const {
  const bool isDust = MessageBag(*request_).IsDust();
  return changed_.testFlag(kStateStatus) && isDust != wasDust_ ? std::optional(isDust)
                                                               : std::nullopt;
}

Result<> StateEdits::Store() {
  const StateMask changed = std::exchange(changed_, {});
  wasDust_ = MessageBag(*request_).IsDust();
  MailStore store(context_);
  // A message may have been sent since the window was opened: the dust bin changes the sign alone.
  Result<> stored;
  if (changed.testFlag(kStateStatus)) {
    stored = store.UpdateDust(*request_, MessageBag(*request_).IsDust());
  }
  if (const StateMask rest = changed & ~StateMask(kStateStatus)) {
    const Result<> rewritten = store.UpdateMessageState(rest, *request_, true);
    if (!rewritten) stored = rewritten;
  }
  return stored;
}

}  // namespace vorn
