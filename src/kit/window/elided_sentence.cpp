#include "kit/window/elided_sentence.h"

#include <QFontMetrics>
#include <QRegularExpression>

#include "storage/base/shown_text.h"

namespace vorn {
namespace {

constexpr qsizetype kLeastName = 10;  // characters by which a name is known

QRegularExpressionMatch LongestName(const QString& sentence) {
  static const QRegularExpression kQuoted(QStringLiteral("[「“]([^「」“”]*)[」”]"));
  QRegularExpressionMatch longest;
  for (auto names = kQuoted.globalMatch(sentence); names.hasNext();) {
    const QRegularExpressionMatch name = names.next();
    if (name.capturedLength(1) > longest.capturedLength(1)) longest = name;
  }
  return longest;
}

}  // namespace

QString ElidedSentence(QString sentence, const QFontMetrics& metrics, int width) {
  // What fits is asked of what cuts, which does not round as the metrics do.
  const auto cut = [&] { return metrics.elidedText(sentence, Qt::ElideRight, width); };
  while (cut() != sentence) {
    const QRegularExpressionMatch name = LongestName(sentence);
    if (name.capturedLength(1) <= kLeastName) break;
    sentence.replace(name.capturedStart(1), name.capturedLength(1),
                     ShownFileName(name.captured(1), name.capturedLength(1) - 1));
  }
  return cut();
}

}  // namespace vorn
