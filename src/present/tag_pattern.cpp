#include "present/tag_pattern.h"

#include "mail/codec/charset/code_page_932.h"

namespace vorn {

TagPattern CreateTagPattern(const QString& tag, const QVariant& key) {
  TagPattern pattern;
  pattern.tag = ToCodePage932(tag);
  pattern.upper = ToCodePage932(tag.toUpper());
  pattern.lower = ToCodePage932(tag.toLower());
  pattern.length = static_cast<qint32>(pattern.tag.size());
  pattern.key = key;
  return pattern;
}

bool MatchTagPattern(const QByteArray& text, const TagPattern& pattern, qsizetype position) {
  if (position < 0 || position + pattern.length > text.size()) return false;
  const char* bytes = text.constData() + position;
  for (qint32 i = 0; i < pattern.length; ++i) {
    if (bytes[i] != pattern.upper[i] && bytes[i] != pattern.lower[i]) return false;
  }
  return true;
}

}  // namespace vorn
