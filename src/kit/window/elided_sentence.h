#pragma once

#include <QString>

class QFontMetrics;

namespace vorn {

/// A sentence as it fits into `width` pixels: the names in it, which stand in quotation marks, are
/// shortened in their middles first, the longest one first, and only then does the end give way to
/// "…".
QString ElidedSentence(QString sentence, const QFontMetrics& metrics, int width);

}  // namespace vorn
