#pragma once

#include <QByteArray>
#include <QStringList>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// What is being written, kept in the profile's encrypted database until the message is stored or
/// given up, so that a crash loses nothing that was typed.
namespace Drafts {

/// Keeps `source` as the draft of the message with that serial identifier, in the place of the one
/// kept before.
Result<> Keep(Context& context, const SerialId& message, const QByteArray& source);
void Forget(Context& context, const SerialId& message);
/// The serial identifiers of the messages of which a draft was left behind. Those that wait or were
/// sent meanwhile have none any more.
SerialIds LeftBehind(Context& context);
/// Stores a draft that was left behind as its message, being edited. When it fails, the draft is
/// still there.
Result<> Restore(Context& context, const SerialId& message);

}  // namespace Drafts
}  // namespace vorn
