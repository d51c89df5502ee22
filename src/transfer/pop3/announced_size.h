#pragma once

#include <QByteArray>

namespace vorn {

/// How well a downloaded message fits the size that the server said it has (RFC 1939 section 11).
enum class SizeFit {
  Exact,      ///< but for the end of the answer, which some count as well
  LineFeeds,  ///< a line break may have been counted as one byte
  Near,       ///< about as large: some count in blocks, or add fields on the way
  Off,        ///< a good part is missing, or it is another message
};

/// A size of 0 says nothing, and no answer is believed at once for it. Off are as well an empty
/// answer and one that ends before its text has begun, where the server knows of more.
SizeFit FitOf(const QByteArray& message, qint64 announced);

inline bool IsExact(SizeFit fit) {
  return fit == SizeFit::Exact || fit == SizeFit::LineFeeds;
}

}  // namespace vorn
