#pragma once

#include <QList>
#include <QString>
#include <vector>

#include "mail/address.h"
#include "mail/attachments.h"
#include "storage/context.h"

namespace vorn {

/// A stored message as a message window shows it.
struct OpenedMessage {
  bool found = false;
  QString subject;
  QList<AddressEntry> addresses;
  QString text;
  QString timestamp;  ///< of storing, in its stored form
  std::vector<Attachment> attachments;
};

/// Reads the message that the request names and copies its index columns into the request's keys
/// ("content", "work_subject", "work_timestamp", "process", "mailaddress", "flag", "folder"). A
/// message that is opened for the first time is marked as opened. A message that cannot be read
/// gives an empty one; the session's `LastError` may say why.
OpenedMessage OpenMessage(Context& context, Disk& request);

}  // namespace vorn
