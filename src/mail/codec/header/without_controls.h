#pragma once

#include <QString>
#include <algorithm>

namespace vorn::MimeCodec {

/// A text with blanks for its line breaks and other controls, which a word smuggles in: they would
/// forge lines of the index and fields of a header.
inline QString WithoutControls(QString text) {
  std::replace_if(
      text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; },
      QChar(u' '));
  return text;
}

}  // namespace vorn::MimeCodec
