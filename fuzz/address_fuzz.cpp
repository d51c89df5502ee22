#include "fuzz_input.h"
#include "mail/codec/header/address.h"
#include "mail/codec/mime/mime_codec.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArray field = "To: " + fuzz::Bytes(data, size).toByteArray().replace('\n', ' ');
  const QString decoded = MimeCodec::DecodeHeader(field, 0, CharsetChoice::Automatic,
                                                  MimeCodec::HeaderUse::AddressList);
  const QString lines = ParseAddressList(decoded);
  if (lines.isEmpty()) {  // groups without members name nobody
    fuzz::Require(decoded.count(u':') > 1);
    return 0;
  }
  for (const QString& line : lines.split(QStringLiteral("\r\n"))) {
    fuzz::Require(line.startsWith(QStringLiteral("TO: ")) && fuzz::IsOneLine(line));
    fuzz::Require(!ParseAddressEntry(line).address.isEmpty());
  }
  const AddressEntry entry = ParseAddressEntry(QString::fromUtf8(fuzz::Bytes(data, size)));
  fuzz::Require(entry.address.isEmpty() == WithWholeAddress(entry).address.isEmpty());
  return 0;
}
