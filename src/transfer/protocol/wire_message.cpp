#include "transfer/protocol/wire_message.h"

#include <algorithm>

#include "mail/codec/header/header_editing.h"

namespace vorn {
namespace {

// What is sent was composed here, so that its last full stop is always the mark.
QByteArray WithoutComposedMark(QByteArray source) {
  if (source == ".\r\n") return {};
  if (source.endsWith("\r\n.\r\n")) source.chop(3);
  return source;
}

}  // namespace

QByteArray WireMessage(const QByteArray& source) {
  const QByteArray message = WithoutComposedMark(
      MimeCodec::RemoveField(MimeCodec::RemoveField(source, "Bcc:"), "Resent-Bcc:"));
  QByteArray wire;
  wire.reserve(message.size() + message.size() / 32 + 2);
  const char* at = message.constData();
  const char* const end = at + message.size();
  while (at < end) {
    const char* lineEnd = std::find_if(at, end, [](char c) { return c == '\r' || c == '\n'; });
    if (*at == '.') wire += '.';
    wire.append(at, lineEnd - at);
    wire += "\r\n";
    at = lineEnd;
    if (at < end) at += end - at > 1 && at[0] == '\r' && at[1] == '\n' ? 2 : 1;
  }
  return wire;
}

}  // namespace vorn
