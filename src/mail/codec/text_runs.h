#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>

namespace vorn {

/// The reading of bytes whose first lines are in one code and whose others are in another one, as
/// mailing lists make by putting words of their own behind a text. One of the two is ISO-2022-JP or
/// UTF-8, which prove themselves; both are without errors.
std::optional<QString> ReadInTwoRuns(QByteArrayView bytes, bool atCut);

}  // namespace vorn
