#include "transfer/wire_message.h"

#include "mail/header_editing.h"

namespace vorn {
namespace {

QByteArray WithoutEndMark(QByteArray source) {
  if (source == ".\r\n") return {};
  if (source.endsWith("\r\n.\r\n")) source.chop(3);
  return source;
}

}  // namespace

QByteArray WireMessage(const QByteArray& source) {
  const QByteArray message = WithoutEndMark(MimeCodec::RemoveField(source, "Bcc:"));
  QByteArray wire;
  wire.reserve(message.size() + message.size() / 32 + 2);
  bool atLineStart = true;
  for (qsizetype i = 0; i < message.size(); ++i) {
    const char c = message[i];
    if (c == '\r' || c == '\n') {
      if (c == '\r' && i + 1 < message.size() && message[i + 1] == '\n') ++i;
      wire += "\r\n";
      atLineStart = true;
      continue;
    }
    if (atLineStart && c == '.') wire += '.';
    wire += c;
    atLineStart = false;
  }
  if (!atLineStart) wire += "\r\n";
  return wire;
}

}  // namespace vorn
