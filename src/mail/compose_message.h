#pragma once

#include <QByteArray>
#include <functional>

#include "mail/message_model.h"

namespace vorn {

/// What composing needs besides the model.
struct ComposeOptions {
  CharsetChoice charset = CharsetChoice::Automatic;
  EditSettings settings;
  QString boundaryToken;  ///< a unique text, for messages with attachments
  /// The decoded bytes of an attachment; none when it cannot be read, which leaves it empty.
  std::function<QByteArray(const ModelAttachment&)> read;
};

/// The complete source of a message: Subject, the address fields, References, the reply identifier,
/// the header rows, and the text with its attachments. It ends with a line of one full stop. Date
/// and Message-ID are added when it is sent. Characters that the chosen code lacks make the message
/// UTF-8; a text with a line of more than 998 bytes is encoded (RFC 5322 section 2.1.1).
QByteArray ComposeMessage(const MessageModel& model, const ComposeOptions& options);

/// The content type for a file name, from the platform's MIME database.
QString ContentTypeOf(const QString& fileName);

}  // namespace vorn
