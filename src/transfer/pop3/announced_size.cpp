#include "transfer/pop3/announced_size.h"

#include "mail/store/message_identity.h"

namespace vorn {
namespace {

constexpr qint64 kMostOff = 1024;
constexpr qint64 kEnd = 5;  // of the full stop that ends the answer, with its line breaks
constexpr qint64 kLastBreak = 2;

// Hardly one message of a few lines is counted in blocks.
qint64 Tolerance(qint64 announced) {
  return qMin(kMostOff, announced / 10);
}

// The full stops that are doubled on the way.
qint64 DoubledStops(const QByteArray& message) {
  return message.count("\n.") + (message.startsWith('.') ? 1 : 0);
}

}  // namespace

SizeFit FitOf(const QByteArray& message, qint64 announced) {
  if (message.isEmpty() || announced <= 0) return SizeFit::Off;
  const qint64 more = message.size() - announced;
  if (more < -kLastBreak && !HasBody(message)) return SizeFit::Off;
  // Counting the lines takes longer than all the rest: the usual answer needs none.
  if (more <= 0 && more >= -kEnd) return SizeFit::Exact;
  const qint64 lines = message.count('\n');
  if (more > 0 && qAbs(more - lines) <= kEnd) return SizeFit::LineFeeds;
  if (more >= -kEnd - DoubledStops(message) && more <= kEnd) return SizeFit::Exact;
  const bool isNear = more >= -Tolerance(announced) && more <= lines + Tolerance(announced);
  return isNear ? SizeFit::Near : SizeFit::Off;
}

}  // namespace vorn
