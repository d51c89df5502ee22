#include "transfer/protocol/server_words.h"

#include <algorithm>

namespace vorn {
namespace {

constexpr qsizetype kMaxWords = 200;

}  // namespace

QString ServerWords(const QByteArray& reply) {
  QString words = QString::fromUtf8(reply).simplified().left(kMaxWords);
  for (QChar& c : words) {
    if (!c.isPrint()) c = u'?';
  }
  return words;
}

bool IsSafeArgument(const QString& text) {
  return std::none_of(text.begin(), text.end(),
                      [](QChar c) { return c == u'\r' || c == u'\n' || c.isNull(); });
}

}  // namespace vorn
