#include "transfer/smtp/smtp_reply_reader.h"

namespace vorn {

// A reply is complete with the line that has a blank after its code.
SmtpReplyReader::Event SmtpReplyReader::Next() {
  for (;;) {
    const qsizetype end = buffer_.indexOf('\n');
    if (end < 0 || text_.size() > kMaxReply) {
      return buffer_.size() + text_.size() <= kMaxReply ? Event::NeedMore : Event::TooLong;
    }
    const QByteArray line = buffer_.first(end).trimmed();
    buffer_.remove(0, end + 1);
    bool isCode = false;
    code_ = line.left(3).toInt(&isCode);
    // All lines of a reply bear its code (RFC 5321 section 4.2.1).
    if (!isCode || code_ < 200 || code_ > 599 ||
        (line.size() > 3 && line[3] != ' ' && line[3] != '-') ||
        (!text_.isEmpty() && !text_.startsWith(line.first(3)))) {
      text_ = line;
      return Event::Strange;
    }
    if (!text_.isEmpty()) text_ += '\n';
    text_ += line;
    if (line.size() > 3 && line[3] == '-') continue;
    ++count_;
    return Event::Reply;
  }
}

}  // namespace vorn
