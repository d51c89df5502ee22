#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <optional>

#include "mail/codec/header/uuencoding.h"

namespace vorn::MimeCodec {

/// The first yEnc block (yEnc draft 1.3, of one part or a part of several) in `text` at or after
/// `from`: from the line "=ybegin" to the line "=yend", or to the end where that is missing.
std::optional<TextBlock> FindYencBlock(QByteArrayView text, qsizetype from = 0);

/// The bytes of a block, its control lines included or not.
QByteArray YencDecode(QByteArrayView block);

}  // namespace vorn::MimeCodec
