#include "transfer/pop3/pop3_reply_reader.h"

#include <algorithm>

namespace vorn {
namespace {

// A size that the server merely claims is believed only so far.
constexpr qint64 kMaxReserve = 64 * 1024 * 1024;

}  // namespace

void Pop3ReplyReader::Feed(QByteArrayView bytes) {
  Compact();
  buffer_.append(bytes);
}

void Pop3ReplyReader::Compact() {
  if (at_ == 0) return;
  buffer_.remove(0, at_);
  at_ = 0;
}

Pop3ReplyReader::Event Pop3ReplyReader::NextLine() {
  const qsizetype end = buffer_.indexOf('\n', at_);
  if (end < 0) return buffer_.size() - at_ > kMaxLine ? Event::TooLong : Event::NeedMore;
  const bool hasCr = end > at_ && buffer_[end - 1] == '\r';
  if (!bareLf_) bareLf_ = !hasCr;
  line_ = buffer_.sliced(at_, end - at_ - (hasCr ? 1 : 0));
  at_ = end + 1;
  return Event::Line;
}

void Pop3ReplyReader::BeginBody(qint64 expectedSize, qsizetype limit, qsizetype lineLimit) {
  limit_ = limit;
  lineLimit_ = lineLimit;
  lineSize_ = 0;
  body_.clear();
  body_.reserve(static_cast<qsizetype>(std::clamp<qint64>(expectedSize, 0, kMaxReserve)));
  atLineStart_ = true;
}

// The length of the final dot's line at the start of `rest`, 0 when it is another line; nothing as
// long as it may be either.
std::optional<qsizetype> Pop3ReplyReader::TerminatorLength(QByteArrayView rest) const {
  if (rest.size() < 3 && QByteArrayView(".\r\n").startsWith(rest)) return std::nullopt;
  if (rest.startsWith(".\r\n")) return 3;
  return bareLf_.value_or(false) && rest.startsWith(".\n") ? 2 : 0;
}

Pop3ReplyReader::Event Pop3ReplyReader::NextBody() {
  while (at_ < buffer_.size()) {
    const QByteArrayView rest = QByteArrayView(buffer_).sliced(at_);
    if (atLineStart_ && rest[0] == '.') {
      const std::optional<qsizetype> terminator = TerminatorLength(rest);
      if (!terminator) return Event::NeedMore;
      if (*terminator > 0) {
        at_ += *terminator;
        return Event::Body;
      }
      ++at_;  // the stuffed dot
      atLineStart_ = false;
      continue;
    }
    // On to the end of the line before the next one that begins with a dot.
    qsizetype end = 0;
    for (;;) {
      const qsizetype lineFeed = rest.indexOf('\n', end);
      if (lineFeed < 0) {
        end = rest.size();
        atLineStart_ = false;
        break;
      }
      end = lineFeed + 1;
      const bool isLineEnd = bareLf_.value_or(false) ||
                             (lineFeed > 0 ? rest[lineFeed - 1] == '\r' : body_.endsWith('\r'));
      atLineStart_ = isLineEnd;
      if (end == rest.size() || (isLineEnd && rest[end] == '.')) break;
    }
    Append(rest.first(end));
    at_ += end;
    if (body_.size() > limit_ || lineSize_ > lineLimit_) return Event::TooLong;
  }
  return Event::NeedMore;
}

void Pop3ReplyReader::Append(QByteArrayView bytes) {
  const qsizetype lineFeed = bytes.lastIndexOf('\n');
  lineSize_ = lineFeed < 0 ? lineSize_ + bytes.size() : bytes.size() - lineFeed - 1;
  body_.append(bytes);
}

QByteArray Pop3ReplyReader::TakeBody() {
  QByteArray body;
  body.swap(body_);
  return body;
}

}  // namespace vorn
