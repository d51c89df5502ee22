#include "fuzz_input.h"
#include "mail/codec/mime_codec.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArrayView source = fuzz::Bytes(data, size);
  const qsizetype end = MimeCodec::HeaderBlockEnd(source);
  fuzz::Require(end >= 0 && end <= source.size());
  for (qsizetype i = 0; i < 50; ++i) {
    const QByteArray field = MimeCodec::HeaderAt(source, i);
    if (field.isEmpty()) break;
    fuzz::Require(fuzz::IsOneLine(MimeCodec::DecodeHeader(field, 0)));
    MimeCodec::DecodeHeader(field, 3, CharsetChoice::Euc, MimeCodec::HeaderUse::AddressList);
    const MimeCodec::HeaderParameters parameters(field);
    parameters.Text("filename");
    parameters.Bytes("boundary");
  }
  MimeCodec::HeaderField(source, "Subject:", static_cast<qsizetype>(size / 2), -1);
  return 0;
}
