#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace vorn::MimeCodec {

/// A letter of base64 (RFC 4648 section 4), which stands for six bits; not what fills up its end.
constexpr bool IsBase64Letter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' ||
         c == '/';
}

/// How a body is wrapped (RFC 2045 section 6), by the numbers that the decoding is given.
enum class TransferEncoding { None = -1, Base64 = 0, QuotedPrintable = 1, Uuencode = 3, Yenc = 4 };

/// The encoding that a Content-Transfer-Encoding value names; anything unknown is none.
TransferEncoding TransferEncodingOf(QByteArrayView name);

/// Unwraps bytes; characters that the encoding does not know are passed over.
QByteArray DecodeTransfer(QByteArrayView bytes, TransferEncoding encoding);

/// Where lines begin that are no base64, such as the footer that a mailing list puts behind a text;
/// 0 for what is no base64 at all, and the end when all is.
qsizetype Base64End(QByteArrayView bytes);

/// Wraps bytes in lines of at most 76 characters that end with CR LF (uuencode: of 45 bytes each).
/// What nobody writes today, yEnc, stays as it is.
QByteArray EncodeTransfer(const QByteArray& bytes, TransferEncoding encoding);

/// The bytes from `first` to `last` of a source. A range outside the source is cut.
QByteArrayView PartOf(QByteArrayView source, qsizetype first, qsizetype last);

/// The same, unwrapped.
QByteArray DecodePart(QByteArrayView source, TransferEncoding encoding, qsizetype first,
                      qsizetype last);

/// The text of an encoded word (RFC 2047 section 4) in the "B" or the "Q" encoding.
QByteArray DecodeEncodedWord(QByteArrayView text, bool base64);

}  // namespace vorn::MimeCodec
