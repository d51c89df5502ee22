#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace vorn {

/// Cuts a server's byte stream into replies (RFC 5321 section 4.2), whatever the chunks in which it
/// arrives.
class SmtpReplyReader {
 public:
  /// The longest reply, in bytes.
  static constexpr qsizetype kMaxReply = 64 * 1024;

  enum class Event { NeedMore, Reply, TooLong, Strange };

  void Feed(QByteArrayView bytes) { buffer_.append(bytes); }
  /// Reads on in the reply.
  Event Next();
  /// The code of the reply, and its lines, joined; of one that is not whole what has come, of a
  /// strange one its line.
  int Code() const { return code_; }
  const QByteArray& Text() const { return text_; }
  /// The reply has been taken; the next one begins.
  void Clear() { text_.clear(); }
  /// Whether bytes have come that were not read yet.
  bool HasUnread() const { return !buffer_.isEmpty(); }
  /// How many whole replies have come.
  qsizetype Count() const { return count_; }

 private:
  QByteArray buffer_;
  QByteArray text_;
  int code_ = 0;
  qsizetype count_ = 0;
};

}  // namespace vorn
