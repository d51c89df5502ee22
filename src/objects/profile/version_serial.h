#pragma once

#include <QString>

namespace vorn {

/// A dotted version text as a number that compares: every part with at least four digits, joined,
/// so "0.0.8000" gives 8000. Anything that is no such number gives 0.
qint32 VersionSerialID(const QString& text);

}  // namespace vorn
