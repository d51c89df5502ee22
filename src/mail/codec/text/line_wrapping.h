#pragma once

#include <QString>

namespace vorn {

/// How many columns a text takes where each letter has one, and wide ones, as in Japanese, two.
int ColumnsOf(QStringView text);

/// The text with each line that takes more than `most` columns broken where its language allows it.
/// Quoted lines, that is those that begin with ">" or with `quoteMark`, and addresses stay whole.
QString WrapLines(const QString& text, int most, const QString& quoteMark = {});

}  // namespace vorn
