#include "fuzz_input.h"
#include "mail/codec/mime/mime_codec.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArrayView source = fuzz::Bytes(data, size);
  const qsizetype end = MimeCodec::HeaderBlockEnd(source);
  fuzz::Require(end >= 0 && end <= source.size());
  for (const QByteArray& field : MimeCodec::AllHeaders(source).mid(0, 50)) {
    fuzz::Require(fuzz::IsOneLine(MimeCodec::DecodeHeader(field, 0)));
    MimeCodec::DecodeHeader(field, 3, CharsetChoice::Euc, MimeCodec::HeaderUse::AddressList);
    const MimeCodec::HeaderParameters parameters(field);
    parameters.Text("filename");
    parameters.Bytes("boundary");
  }
  MimeCodec::HeaderField(source, "Subject:", static_cast<qsizetype>(size / 2), -1);
  return 0;
}
