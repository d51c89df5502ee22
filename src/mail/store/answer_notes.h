#pragma once

#include <optional>

#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/message_state.h"

namespace vorn {

/// What a message that is written is an answer to, or forwards, and how that is marked so.
struct Answered {
  SerialId original;
  FlagPosition mark = kFlagAnswered;  ///< or `kFlagForwarded`
  bool operator==(const Answered&) const = default;
};

/// Notes of that about messages that are stored before they are sent: their sources name the
/// original as its writer does, by which no row is found, and do not say whether they forward it.
/// They are in the profile's encrypted database.
namespace AnswerNotes {

Result<> Keep(Context& context, const SerialId& message, const Answered& answered);
/// Nothing where none is kept.
std::optional<Answered> Find(const Context& context, const SerialId& message);
void Forget(Context& context, const SerialId& message);
/// Forgets those of messages that are neither stored as being edited nor among `drafts`.
void Sweep(Context& context, const SerialIds& drafts);

}  // namespace AnswerNotes
}  // namespace vorn
