#pragma once

#include "mail/codec/charset/charset.h"

namespace vorn {

// The decoders behind `Decode`, one for each Japanese code. All read the table of code page 932.

DecodedText DecodeShiftJis(QByteArrayView bytes, bool atCut);
/// With half-width kana (0x8E) and the three-byte codes of JIS X 0212 (0x8F).
DecodedText DecodeEucJp(QByteArrayView bytes, bool atCut);
/// ISO-2022-JP (RFC 1468) as it is met: also half-width kana by `ESC ( I`, by SO and SI and as raw
/// eight-bit bytes, JIS X 0212 (RFC 2237), and the machine-dependent rows.
DecodedText DecodeIso2022Jp(QByteArrayView bytes, bool atCut);

}  // namespace vorn
