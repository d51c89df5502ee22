#pragma once

#include <QByteArray>

namespace vorn {

/// A message as it goes over the wire, in slices, so that the windows stay alive and the progress
/// is true. Its end mark is never torn: either all of it was given out or none.
class OutgoingBody {
 public:
  /// A message without its end mark, of which nothing goes out before `Begin`.
  void Take(const QByteArray& wire) { wire_ = wire; }
  const QByteArray& Wire() const { return wire_; }

  /// Its turn has come: it goes out, with its end mark.
  void Begin();
  /// Gives the next slice; empty when there is none, now or any more.
  QByteArray NextSlice();
  /// Whether it goes out, and not all has been given out.
  bool IsUnderWay() const { return hasBegun_ && sent_ < wire_.size(); }
  /// Whether the end mark has been given out.
  bool IsGone() const { return hasBegun_ && sent_ == wire_.size(); }
  /// Bytes that have been given out, of all.
  qint64 Sent() const { return sent_; }
  qint64 Size() const { return wire_.size(); }

 private:
  QByteArray wire_;
  bool hasBegun_ = false;
  qsizetype sent_ = 0;
};

}  // namespace vorn
