#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <optional>

namespace vorn {

/// Cuts a server's byte stream into status lines and multi-line bodies (RFC 1939 section 3),
/// whatever the chunks in which it arrives.
class Pop3ReplyReader {
 public:
  /// The largest message that is taken, in bytes.
  static constexpr qsizetype kMaxBody = 900 * 1024 * 1024;
  /// The longest line of a status or a list.
  static constexpr qsizetype kMaxLine = 64 * 1024;

  enum class Event { NeedMore, Line, Body, TooLong };

  void Feed(QByteArrayView bytes);

  /// Reads the next status line, which is then in `Line()`.
  Event NextLine();
  /// Without its line break.
  const QByteArray& Line() const { return line_; }
  /// Reads on in a multi-line body, dot-stuffing undone; `Body` when its final dot was read. What
  /// has come so far is in `Body()`.
  Event NextBody();
  /// Whether bytes have come that were not read yet.
  bool HasUnread() const { return at_ < buffer_.size(); }
  /// Begins a body of about that many bytes; of more than `limit`, or with a line of more than
  /// `lineLimit`, it is `TooLong`.
  void BeginBody(qint64 expectedSize, qsizetype limit = kMaxBody, qsizetype lineLimit = kMaxBody);
  const QByteArray& Body() const { return body_; }
  QByteArray TakeBody();

 private:
  std::optional<qsizetype> TerminatorLength(QByteArrayView rest) const;
  void Compact();
  void Append(QByteArrayView bytes);

  QByteArray buffer_;
  qsizetype at_ = 0;
  QByteArray line_;
  QByteArray body_;
  qsizetype limit_ = kMaxBody;
  qsizetype lineLimit_ = kMaxBody;
  qsizetype lineSize_ = 0;  // of the line that goes on
  bool atLineStart_ = true;
  // Whether the server ends its lines with LF alone. Otherwise a LF alone is part of a message and
  // no line end, and a dot after it no mark.
  std::optional<bool> bareLf_;
};

}  // namespace vorn
