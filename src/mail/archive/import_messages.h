#pragma once

#include <QString>

#include "mail/archive/export_messages.h"
#include "storage/context.h"

namespace vorn {

struct ImportCounts {
  int imported = 0;
  int known = 0;  ///< in the store already, but for what mail programs note in a header
  /// In the store already, where they cannot be read any more.
  QList<UnreadableMessage> unreadable;
};

/// Imports the messages of a file or folder (`ReadArchive`) as received ones, under the time at
/// which each arrived, and puts them into `folder`, a folder's serial identifier, unless that is
/// empty. A message that is in the store already is left out. False, with a sentence in `error`,
/// when it could not go on; what was imported stays.
bool ImportMessages(Context& context, const QString& path, const QString& folder,
                    ImportCounts* counts, QString* error, const WorkProgress& progress = {});

/// Takes the first message of a file into the store, in the dust bin, from where the user may take
/// it out to keep it; one that was taken before is found again. Returns its serial identifier, or
/// an empty text with a sentence in `error`.
QString TakeMessageFile(Context& context, const QString& path, QString* error);

}  // namespace vorn
