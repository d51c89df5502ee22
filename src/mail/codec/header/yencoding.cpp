#include "mail/codec/header/yencoding.h"

namespace vorn::MimeCodec {
namespace {

constexpr QByteArrayView kBegin = "=ybegin ";
constexpr QByteArrayView kEnd = "=yend";
constexpr unsigned char kShift = 42;
constexpr unsigned char kEscapedShift = 64;

qsizetype LineStart(QByteArrayView text, QByteArrayView line, qsizetype from) {
  for (qsizetype at = text.indexOf(line, from); at >= 0; at = text.indexOf(line, at + 1)) {
    if (at == 0 || text[at - 1] == '\n') return at;
  }
  return -1;
}

qsizetype NextLine(QByteArrayView text, qsizetype at) {
  const qsizetype end = text.indexOf('\n', at);
  return end < 0 ? text.size() : end + 1;
}

}  // namespace

std::optional<TextBlock> FindYencBlock(QByteArrayView text, qsizetype from) {
  for (qsizetype start = LineStart(text, kBegin, from); start >= 0;
       start = LineStart(text, kBegin, start + 1)) {
    const qsizetype data = NextLine(text, start);
    const QByteArrayView line = text.sliced(start, data - start);
    const qsizetype name = line.indexOf(" name=");
    if (name < 0 || line.indexOf(" size=") < 0 || data == text.size()) continue;
    const qsizetype end = LineStart(text, kEnd, data);
    const qsizetype last = end < 0 ? text.size() : NextLine(text, end);
    return TextBlock{start, last - 1, line.sliced(name + 6).trimmed().toByteArray()};
  }
  return std::nullopt;
}

QByteArray YencDecode(QByteArrayView block) {
  QByteArray bytes;
  bytes.reserve(block.size());
  for (qsizetype at = 0; at < block.size();) {
    const qsizetype next = NextLine(block, at);
    const QByteArrayView line = block.sliced(at, next - at);
    at = next;
    if (line.startsWith("=y")) continue;
    for (qsizetype i = 0; i < line.size(); ++i) {
      unsigned char shift = kShift;
      if (line[i] == '\r' || line[i] == '\n') continue;
      if (line[i] == '=' && i + 1 < line.size()) {
        shift += kEscapedShift;
        ++i;
      }
      bytes += static_cast<char>(static_cast<unsigned char>(line[i]) - shift);
    }
  }
  return bytes;
}

}  // namespace vorn::MimeCodec
