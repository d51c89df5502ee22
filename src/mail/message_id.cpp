#include "mail/message_id.h"

#include "mail/codec/header/identifiers.h"

namespace vorn {

SerialId NewMessageSerialID(Context& context) {
  const SerialId serial = context.Data.NewSerialID(QStringLiteral("mail_"));
  return SerialId(MimeCodec::EncodeIdentifier(serial.Text().toLatin1()) + u'@' +
                  context.ComputerName);
}

}  // namespace vorn
