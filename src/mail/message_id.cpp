#include "mail/message_id.h"

#include "mail/codec/header/identifiers.h"

namespace vorn {

QString NewMessageSerialID(Context& context) {
  const QString serial = context.Data.NewSerialID(QStringLiteral("mail_"));
  return MimeCodec::EncodeIdentifier(serial.toLatin1()) + u'@' + context.ComputerName;
}

}  // namespace vorn
