#pragma once

#include <QList>
#include <QString>
#include <functional>
#include <optional>

#include "mail/archive/mail_archive.h"
#include "mail/search/folder_listing.h"
#include "storage/context.h"

namespace vorn {

/// How far a long work is: so many messages are done. False ends it.
using WorkProgress = std::function<bool(int done)>;

struct ExportOrder {
  SerialId folder;  ///< its serial identifier
  ArchiveFormat format = ArchiveFormat::Mbox;
  QString path;            ///< of the file or folder to write
  bool overwrite = false;  ///< also when there is one already (see `ArchiveWriter`)
  std::optional<FolderListing> listing = {};  ///< of the folder, where it is known already
};

struct ExportOutcome {
  Result<> complete;                         ///< that the target was written, or why it was not
  int count = 0;                             ///< messages in it
  QList<UnreadableMessage> unreadable = {};  ///< left out
};

/// Writes a folder's messages, oldest first. What cannot be read is left out and named; the target
/// appears when all is written, or not at all.
ExportOutcome ExportMessages(Context& context, const ExportOrder& order,
                             const WorkProgress& progress = {});

}  // namespace vorn
