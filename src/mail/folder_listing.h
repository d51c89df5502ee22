#pragma once

#include <QList>
#include <QString>
#include <vector>

#include "storage/context.h"

namespace vorn {

struct ListedMessage {
  QString serialId;
  QString subject;
  QString timestamp;
  bool opened = false;
  bool isReceived = false;  ///< and not written here
};

struct FolderListing {
  bool read = false;                    ///< else nothing could be listed, and `LastError` says why
  std::vector<ListedMessage> messages;  ///< oldest first
  /// Those whose rows cannot be read. Which folder they are in may be lost with them.
  QList<UnreadableMessage> unreadable;
};

/// Lists a folder to its end. A damaged page hides only the messages on it: where the list breaks
/// off, every message is looked for by itself.
FolderListing ListFolderMessages(Context& context, const QString& folder);

}  // namespace vorn
