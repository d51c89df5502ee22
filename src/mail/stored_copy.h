#pragma once

#include <QByteArray>
#include <QString>

#include "storage/context.h"

namespace vorn {

/// Whether the message with that identifier (`FIELD_ID`) in the mail file at `file` reads back as
/// it was stored. Only then may another copy of it, such as the server's, be given up. False as
/// well when there is none, or the file cannot be read.
bool StoredCopyIsWhole(Context& context, const QString& file, const QString& messageId);

/// How a message stored under an identifier compares with another one of that name.
enum class StoredCopy {
  None,     ///< there is none
  Same,     ///< byte for byte
  Other,    ///< another message, or one that cannot be read
  Unknown,  ///< the file cannot be read
};

StoredCopy CompareStoredCopy(Context& context, const QString& file, const QString& messageId,
                             const QByteArray& source);

/// Gives the message stored under an identifier one that no other has, so that another message can
/// take its own. False when that cannot be stored.
bool FreeMessageId(Context& context, const QString& file, const QString& messageId);

}  // namespace vorn
