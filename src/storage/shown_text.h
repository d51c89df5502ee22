#pragma once

#include <QString>

namespace vorn {

/// A text that may come from outside as it may be shown: control characters and the marks that turn
/// the direction of others (Unicode bidirectional algorithm, UAX 9) are visible signs, line breaks
/// and tabulators stay, and what is longer than `most` characters ends in "…".
QString ShownText(const QString& text, qsizetype most = 4000);

/// The same, whole, for a line of a list: line breaks and tabulators are blanks.
QString ShownInLine(const QString& text);

}  // namespace vorn
