#include "transfer/server_words.h"
#include "storage/ui.h"

#include <algorithm>

namespace vorn {
namespace {

constexpr qsizetype kMaxWords = 200;

}  // namespace

QString ServerWords(const QByteArray& reply) {
  QString words = QString::fromUtf8(reply.left(kMaxWords)).simplified();
  for (QChar& c : words) {
    if (!c.isPrint()) c = u'?';
  }
  return words;
}

QString WithReply(const QString& sentence, const QByteArray& reply) {
  return sentence + Ui::tr("（サーバーの応答: ") + ServerWords(reply) + u'）';
}

bool IsSafeArgument(const QString& text) {
  return std::none_of(text.begin(), text.end(),
                      [](QChar c) { return c == u'\r' || c == u'\n' || c.isNull(); });
}

}  // namespace vorn
