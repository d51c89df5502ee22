#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "mail/store/mail_row.h"
#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/session/file_check.h"

namespace vorn {

struct FolderMessage {
  SerialId serialId;
  QString subject;
  QString timestamp;
  bool opened = false;
  bool isReceived = false;  ///< and not written here
};

struct FolderListing {
  std::vector<FolderMessage> messages;  ///< oldest first
  /// Those whose rows cannot be read. Which folder they are in may be lost with them.
  QList<UnreadableMessage> unreadable;
};

/// Lists a folder to its end. A damaged page hides only the messages on it: where the list breaks
/// off, every message is looked for by itself.
Result<FolderListing> ListFolderMessages(Context& context, const SerialId& folder);

/// Hands over the rows of a folder's messages, oldest first, as far as they can be read. Says why
/// where the list breaks off.
Result<> ReadFolderRows(Context& context, const SerialId& folder,
                        const std::function<void(const MailRow& row)>& take);

/// Lists the messages with these identifiers in their order; those that are gone are left out.
Result<FolderListing> ListMessages(Context& context, const SerialIds& serialIds);

}  // namespace vorn
