#pragma once

#include <QByteArrayView>

#include "mail/charset.h"

namespace vorn {

/// The likeliest character set of text that says nothing of its own: JIS by its escape sequences,
/// else whichever of UTF-8, EUC and Shift-JIS decodes it without error, and of several the one that
/// gives the more usual Japanese. Plain ASCII is `Ascii`; bytes that fit nothing are `Unknown`.
Charset RecognizeCharset(QByteArrayView bytes);

/// The stored number of a recognised code: 0 JIS (and plain ASCII), 1 EUC, 2 Shift-JIS, -1 for
/// everything else, UTF-8 among it.
int CodeNumber(const Charset& charset);

}  // namespace vorn
