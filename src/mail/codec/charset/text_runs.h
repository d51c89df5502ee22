#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>

namespace vorn {

/// The reading of bytes in two codes, as those make who put words of their own before or behind a
/// text. One of the two is ISO-2022-JP or UTF-8, which prove themselves; both are without errors.
/// Where the other one is UTF-8 they meet at an ASCII byte.
std::optional<QString> ReadInRuns(QByteArrayView bytes, bool atCut);

}  // namespace vorn
