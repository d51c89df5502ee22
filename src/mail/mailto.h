#pragma once

#include <QString>

#include "mail/message_model.h"

namespace vorn {

/// Whether a text is a "mailto:" address.
bool IsMailto(const QString& text);

/// Puts what a "mailto:" address (RFC 6068) says into a new message: recipients, subject, text and
/// the message it answers. Everything else that it may ask for, such as files or other header
/// fields, is left out: the address comes from strangers.
void ApplyMailto(const QString& address, MessageModel& model);

}  // namespace vorn
