#pragma once

#include <QString>

namespace vorn {

/// Whether bytes under a Western label, which gives every one of them a meaning, are Japanese:
/// their Japanese reading has kana or several usual ideographs, and their Western one rows of
/// letters and signs that no language has.
bool IsPlainlyJapanese(const QString& japanese, const QString& western);

}  // namespace vorn
