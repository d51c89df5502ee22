#pragma once

#include <QByteArrayView>
#include <QStringView>
#include <algorithm>

namespace vorn {

/// A half-width kana or its punctuation (JIS X 0201).
constexpr bool IsHalfKana(QChar c) {
  return c.unicode() >= 0xFF61 && c.unicode() <= 0xFF9F;
}

inline bool IsAscii(QStringView text) {
  return std::ranges::all_of(text, [](QChar c) { return c.unicode() < 0x80; });
}

constexpr bool IsHighByte(char byte) {
  return (byte & 0x80) != 0;
}

/// Without a branch for each byte, as long texts have none as a rule.
inline bool HasHighBytes(QByteArrayView bytes) {
  char bits = 0;
  for (const char byte : bytes) bits = static_cast<char>(bits | byte);
  return IsHighByte(bits);
}

/// A blank within a line (RFC 5322 section 2.2.2).
constexpr bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

}  // namespace vorn
