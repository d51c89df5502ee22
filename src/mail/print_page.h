#pragma once

#include <QByteArray>

#include "mail/message_model.h"

namespace vorn {

/// A message as an HTML page for printing: a table of sender, recipients, copies, attachments and
/// subject, each only when there is one, and the text below. All of it is escaped. With `html`, a
/// message's HTML part as it was written, that stands below instead, as `SanitizeHtml` leaves it,
/// without images of the network. The bytes are UTF-8 and say so.
QByteArray PrintPage(const MessageModel& model, const QString& html = {});

}  // namespace vorn
