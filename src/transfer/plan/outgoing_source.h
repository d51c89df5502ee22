#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "mail/codec/header/address.h"
#include "storage/base/serial_id.h"

namespace vorn {

/// Who sends a message.
struct OutgoingSender {
  QString address;
  QString display;
  bool rewrite = false;        ///< the sender in the message is replaced by this one
  QList<AddressEntry> former;  ///< the senders that the message named
  /// Instead of replacing, the message's senders stay and this one becomes "Sender" (RFC 5322
  /// section 3.6.2), unless the message names none.
  bool keepsFormer = false;
};

/// A stored source as it is sent: with Date and Message-ID in front of it (its own, if it was sent
/// before, are left out), and with the sender replaced or added when that is asked for. `serialId`
/// is the message's, which makes the Message-ID unique.
QByteArray OutgoingSource(const QByteArray& source, const SerialId& serialId,
                          const OutgoingSender& sender);

}  // namespace vorn
