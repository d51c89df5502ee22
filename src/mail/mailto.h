#pragma once

#include <QString>

#include "mail/message_model.h"

namespace vorn {

/// Whether a text is a "mailto:" address.
bool IsMailto(const QString& text);

/// A new message with what a "mailto:" address (RFC 6068) says: recipients, subject, text and the
/// message it answers. Everything else that it may ask for, such as files or other header fields,
/// is left out: the address comes from strangers.
MessageModel WithMailto(MessageModel model, const QString& address);

}  // namespace vorn
