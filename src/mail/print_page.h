#pragma once

#include <QByteArray>

#include "mail/message_model.h"

namespace vorn {

/// A message as an HTML page for printing: a table of sender, recipients, copies, attachments and
/// subject, each only when there is one, and the text below. All of it is escaped. The bytes are
/// UTF-8 and say so.
QByteArray PrintPage(const MessageModel& model);

}  // namespace vorn
