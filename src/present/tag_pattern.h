#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

namespace vorn {

/// One tag of the page template language, as bytes of code page 932 ready for comparison.
struct TagPattern {
  QByteArray tag;
  QByteArray upper;
  QByteArray lower;
  qint32 length = 0;
  QVariant key;  ///< a child's key
};

TagPattern CreateTagPattern(const QString& tag, const QVariant& key);

/// Whether a pattern stands in the text at a position, ASCII letters in either case.
bool MatchTagPattern(const QByteArray& text, const TagPattern& pattern, qsizetype position);

}  // namespace vorn
