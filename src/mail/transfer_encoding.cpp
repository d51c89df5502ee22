#include "mail/transfer_encoding.h"

#include <gmime/gmime.h>

#include <algorithm>

namespace vorn::MimeCodec {
namespace {

QByteArray RunDecoder(QByteArrayView bytes, GMimeContentEncoding kind) {
  GMimeEncoding decoder;
  g_mime_encoding_init_decode(&decoder, kind);
  const auto size = static_cast<size_t>(bytes.size());
  QByteArray decoded(static_cast<qsizetype>(g_mime_encoding_outlen(&decoder, size)),
                     Qt::Uninitialized);
  const size_t length = g_mime_encoding_flush(&decoder, bytes.data(), size, decoded.data());
  decoded.truncate(static_cast<qsizetype>(length));
  return decoded;
}

}  // namespace

TransferEncoding TransferEncodingOf(QByteArrayView name) {
  if (name.compare("base64", Qt::CaseInsensitive) == 0) return TransferEncoding::Base64;
  if (name.compare("quoted-printable", Qt::CaseInsensitive) == 0) {
    return TransferEncoding::QuotedPrintable;
  }
  return TransferEncoding::None;
}

QByteArray DecodeTransfer(QByteArrayView bytes, TransferEncoding encoding) {
  switch (encoding) {
    case TransferEncoding::Base64:
      return RunDecoder(bytes, GMIME_CONTENT_ENCODING_BASE64);
    case TransferEncoding::QuotedPrintable:
      return RunDecoder(bytes, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    default:
      return bytes.toByteArray();
  }
}

QByteArray DecodePart(QByteArrayView source, TransferEncoding encoding, qsizetype first,
                      qsizetype last) {
  first = std::clamp<qsizetype>(first, 0, source.size());
  last = std::clamp<qsizetype>(last, first - 1, source.size() - 1);
  return DecodeTransfer(source.sliced(first, last - first + 1), encoding);
}

QByteArray DecodeEncodedWord(QByteArrayView text, bool base64) {
  if (base64) return RunDecoder(text, GMIME_CONTENT_ENCODING_BASE64);
  QByteArray quoted = text.toByteArray();
  std::replace(quoted.begin(), quoted.end(), '_', ' ');
  return RunDecoder(quoted, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
}

}  // namespace vorn::MimeCodec
