#pragma once

#include <QString>
#include <functional>

#include "mail/archive/export_messages.h"
#include "mail/store/message_filing.h"
#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// What an import brought.
struct ImportCounts {
  int imported = 0;
  int returned = 0;  ///< known, and taken out of the dust bin
  int known = 0;     ///< in the store already, but for what mail programs note in a header
  int kept = 0;      ///< of those, what lies in the dust bin and stays there
  Move back;         ///< what puts those imported and returned into the dust bin again
  /// In the store already, where they cannot be read any more.
  QList<UnreadableMessage> unreadable;
  QString notice;  ///< a sentence about files in a folder that were passed over

  /// How many messages have been looked at.
  int Read() const { return imported + returned + known; }
  /// Adds what a further import brought.
  void Add(const ImportCounts& further);
};

/// How an import ended: what was imported stays, also where it could not go on.
struct ImportOutcome {
  Result<> complete;
  ImportCounts counts = {};
};

/// Told how many messages an import has looked at, and of how many bytes; false ends it.
using ImportProgress = std::function<bool(int messages, qint64 bytes)>;

/// Imports the messages of a file or folder (`ReadArchive`) as received ones, under the time at
/// which each arrived, and puts them into `folder`, a folder's serial identifier, unless that is
/// empty. A message that is in the store already is left out; one that lies in the dust bin,
/// received or sent, is taken out of it into `folder`, or stored anew where it cannot be read any
/// more. What is edited or waits to be sent stays there.
ImportOutcome ImportMessages(Context& context, const QString& path, const SerialId& folder,
                             const ImportProgress& progress = {});

/// Takes the first message of a file into the store, in the dust bin, from where the user may take
/// it out to keep it; one that was taken before is found again. Returns its serial identifier.
Result<SerialId> TakeMessageFile(Context& context, const QString& path);

}  // namespace vorn
