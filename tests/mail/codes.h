#pragma once

#include "mail/codec/charset/text_encoding.h"

namespace vorn {

using Output = MimeCodec::OutputCharset;

/// The codes of Japanese mail, with their usual labels.
struct Code {
  const char* label;
  Output output;
};
inline constexpr Code kCodes[] = {{"iso-2022-jp", Output::Jis},
                                  {"euc-jp", Output::Euc},
                                  {"shift_jis", Output::ShiftJis},
                                  {"utf-8", Output::Utf8}};

}  // namespace vorn
