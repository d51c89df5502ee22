#pragma once

#include <QByteArray>
#include <QString>

namespace vorn::MimeCodec {

/// A text digest of bytes: SHA-256 in lower-case hexadecimal.
QString Digest(const QByteArray& bytes);

/// A serial identifier as a token that may stand before the "@" of a Message-ID (RFC 5322 section
/// 3.6.4): base64 with the URL alphabet, without padding.
QString EncodeIdentifier(const QByteArray& bytes);

/// The current date as a header holds it (RFC 5322 section 3.3).
QString CurrentDateText();

}  // namespace vorn::MimeCodec
