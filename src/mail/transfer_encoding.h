#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace vorn::MimeCodec {

/// How a body is wrapped (RFC 2045 section 6), by the numbers that the decoding is given.
enum class TransferEncoding { None = -1, Base64 = 0, QuotedPrintable = 1, Uuencode = 3 };

/// The encoding that a Content-Transfer-Encoding value names; anything unknown is none.
TransferEncoding TransferEncodingOf(QByteArrayView name);

/// Unwraps bytes; characters that the encoding does not know are passed over.
QByteArray DecodeTransfer(QByteArrayView bytes, TransferEncoding encoding);

/// Wraps bytes in lines of at most 76 characters that end with CR LF (uuencode: of 45 bytes each).
QByteArray EncodeTransfer(const QByteArray& bytes, TransferEncoding encoding);

/// The bytes from `first` to `last` of a source, unwrapped. A range outside the source is cut.
QByteArray DecodePart(QByteArrayView source, TransferEncoding encoding, qsizetype first,
                      qsizetype last);

/// The text of an encoded word (RFC 2047 section 4) in the "B" or the "Q" encoding.
QByteArray DecodeEncodedWord(QByteArrayView text, bool base64);

}  // namespace vorn::MimeCodec
