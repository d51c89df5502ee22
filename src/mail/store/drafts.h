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
/// kept before. `leftOut` are the files, by path or name, that the message has and the draft has
/// not.
Result<> Keep(Context& context, const SerialId& message, const QByteArray& source,
              const QStringList& leftOut = {});
void Forget(Context& context, const SerialId& message);
/// The serial identifiers of the messages of which a draft was left behind. Those that wait or were
/// sent meanwhile have none any more.
SerialIds LeftBehind(Context& context);
struct Restored {
  SerialId message;
  QStringList leftOut;  ///< files, by path or name, that it has to be given again
};

/// Stores a draft that was left behind as its message, being edited; where files were left out of
/// it, as one of its own by the identifier `apart`, beside what is stored, which may have them.
/// When it fails, the draft is still there.
Result<Restored> Restore(Context& context, const SerialId& message, const SerialId& apart);

}  // namespace Drafts
}  // namespace vorn
