#include "mail/codec/header/uuencoding.h"

namespace vorn::MimeCodec {
namespace {

constexpr qsizetype kBytesPerLine = 45;
constexpr qsizetype kSureLines = 2;  // a text hardly has so many that look like data

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

// Where the file's name begins in "begin", the mode in three or four octal digits, and the name; 0
// in another line.
qsizetype NameStart(QByteArrayView line) {
  if (!line.startsWith("begin ")) return 0;
  qsizetype at = 6;
  while (at < line.size() && line[at] >= '0' && line[at] <= '7') ++at;
  const bool isMode = at == 9 || at == 10;
  return isMode && at + 1 < line.size() && line[at] == ' ' ? at + 1 : 0;
}

bool IsBegin(QByteArrayView line) {
  return NameStart(line) > 0;
}

// Whether the line can hold data: its first character tells its length.
bool IsData(QByteArrayView line) {
  if (line.isEmpty() || line[0] < ' ' || line[0] > '`') return false;
  const qsizetype need = (Value(line[0]) + 2) / 3 * 4;
  return line.size() - 1 >= need - 2 && line.size() - 1 <= need + 2;  // blanks at the end get lost
}

}  // namespace

std::optional<TextBlock> FindUuBlock(QByteArrayView text, qsizetype from) {
  for (qsizetype at = from; at < text.size();) {
    const qsizetype start = at;
    const QByteArrayView line = TakeLine(text, at);
    if (!IsBegin(line)) continue;
    qsizetype inner = at;
    qsizetype dataLines = 0;
    qsizetype whole = at;
    while (inner < text.size()) {
      const QByteArrayView data = TakeLine(text, inner);
      if (data == "end" && dataLines > 0) {
        return TextBlock{start, inner - 1, line.sliced(NameStart(line)).trimmed().toByteArray()};
      }
      if (data.isEmpty() && dataLines > 0) continue;
      if (!IsData(data)) break;
      ++dataLines;
      whole = inner;
    }
    // What is there of a block that was cut off.
    if (dataLines >= kSureLines && inner >= text.size()) {
      return TextBlock{start, whole - 1, line.sliced(NameStart(line)).trimmed().toByteArray()};
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
