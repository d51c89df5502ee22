#include "mail/uuencoding.h"

namespace vorn::MimeCodec {
namespace {

constexpr qsizetype kBytesPerLine = 45;

int Value(char c) {
  return (c - ' ') & 0x3F;
}
char Digit(int value) {
  return value == 0 ? '`' : static_cast<char>(' ' + value);
}

// The line at `at`, without its line break; `at` moves to the next one.
QByteArrayView TakeLine(QByteArrayView text, qsizetype& at) {
  const qsizetype found = text.indexOf('\n', at);
  const qsizetype end = found < 0 ? text.size() : found;
  QByteArrayView line = text.sliced(at, end - at);
  if (line.endsWith('\r')) line.chop(1);
  at = found < 0 ? text.size() : found + 1;
  return line;
}

bool IsBegin(QByteArrayView line) {
  if (!line.startsWith("begin ") || line.size() < 11) return false;
  for (qsizetype i = 6; i < 9; ++i) {
    if (line[i] < '0' || line[i] > '7') return false;
  }
  return line[9] == ' ';
}

// Whether the line can hold data: its first character tells its length.
bool IsData(QByteArrayView line) {
  if (line.isEmpty() || line[0] < ' ' || line[0] > '`') return false;
  const qsizetype need = (Value(line[0]) + 2) / 3 * 4;
  return line.size() - 1 >= need - 2 && line.size() - 1 <= need + 2;  // blanks at the end get lost
}

}  // namespace

std::optional<UuBlock> FindUuBlock(QByteArrayView text, qsizetype from) {
  for (qsizetype at = from; at < text.size();) {
    const qsizetype start = at;
    const QByteArrayView line = TakeLine(text, at);
    if (!IsBegin(line)) continue;
    qsizetype inner = at;
    qsizetype dataLines = 0;
    while (inner < text.size()) {
      const QByteArrayView data = TakeLine(text, inner);
      if (data == "end" && dataLines > 0) {
        return UuBlock{start, inner - 1, line.sliced(10).trimmed().toByteArray()};
      }
      if (!IsData(data)) break;
      ++dataLines;
    }
  }
  return std::nullopt;
}

QByteArray UuDecode(QByteArrayView block) {
  QByteArray bytes;
  bytes.reserve(block.size() * 3 / 4);
  for (qsizetype at = 0; at < block.size();) {
    const QByteArrayView line = TakeLine(block, at);
    if (IsBegin(line)) continue;
    if (line == "end") break;
    if (line.isEmpty() || line[0] < ' ' || line[0] > '`') continue;
    int length = Value(line[0]);
    const auto digit = [&line](qsizetype i) { return i < line.size() ? Value(line[i]) : 0; };
    for (qsizetype i = 1; length > 0; i += 4) {
      const int word = digit(i) << 18 | digit(i + 1) << 12 | digit(i + 2) << 6 | digit(i + 3);
      for (int shift = 16; shift >= 0 && length > 0; shift -= 8, --length) {
        bytes += static_cast<char>(word >> shift & 0xFF);
      }
    }
  }
  return bytes;
}

QByteArray UuEncode(const QByteArray& bytes) {
  QByteArray lines;
  lines.reserve(bytes.size() * 4 / 3 + bytes.size() / 15);
  for (qsizetype at = 0; at < bytes.size(); at += kBytesPerLine) {
    const qsizetype length = qMin(kBytesPerLine, bytes.size() - at);
    lines += Digit(static_cast<int>(length));
    const auto byte = [&](qsizetype i) {
      return i < length ? static_cast<unsigned char>(bytes[at + i]) : 0;
    };
    for (qsizetype i = 0; i < length; i += 3) {
      const int word = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
      for (int shift = 18; shift >= 0; shift -= 6) lines += Digit(word >> shift & 0x3F);
    }
    lines += "\r\n";
  }
  return lines;
}

}  // namespace vorn::MimeCodec
