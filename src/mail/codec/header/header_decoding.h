#pragma once

#include <QByteArrayView>
#include <QString>

#include "mail/codec/charset/charset.h"

namespace vorn::MimeCodec {

/// What decoded words must not break: in an address list, a comma or bracket inside an encoded name
/// is no separator, so such a name is put in double quotes.
enum class HeaderUse { Text, AddressList };

/// Decodes a header field (as `HeaderField` gives it) to text: its encoded words (RFC 2047), also
/// where they stand inside quotes or split a multi-byte character or an escape sequence between
/// them, and raw eight-bit or JIS text. The first `skip` characters, the field's name, are left
/// out. `charset` is how raw text is read; encoded words name their own.
QString DecodeHeader(QByteArrayView field, qsizetype skip, const ReadingCode& charset = {},
                     HeaderUse use = HeaderUse::Text);

}  // namespace vorn::MimeCodec
