#pragma once

#include <QByteArray>
#include <QStringView>
#include <optional>

#include "mail/codec/charset/charset.h"

namespace vorn::MimeCodec {

/// The codes in which messages are written.
enum class OutputCharset { Ascii, Jis, Euc, ShiftJis, Utf8 };

/// The name for "charset=".
QByteArray CharsetName(OutputCharset charset);

/// `text` as bytes of a code, or nothing when it lacks a character. The Japanese codes are kept to
/// JIS X 0208, with half-width kana only where the code defines them, so that every reader knows
/// what is written.
std::optional<QByteArray> EncodeText(QStringView text, OutputCharset charset);

/// The code to write a message in: the user's choice if it holds every character, else UTF-8. The
/// automatic choice takes ASCII, then ISO-2022-JP, then UTF-8.
OutputCharset ChooseOutput(QStringView text, CharsetChoice choice);

}  // namespace vorn::MimeCodec
