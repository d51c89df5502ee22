#pragma once

#include <QString>

namespace vorn {

/// The declarations of a style attribute that only say how text looks: what would load something,
/// leave its place or hide behind an escape is left out. Never fails.
QString SafeDeclarations(const QString& declarations);

/// A style sheet's rules with their declarations so filtered. Of the at-rules only "@media" stays.
QString SafeStyleSheet(const QString& sheet);

/// Whether styles that were filtered give text or what it stands on a colour of their own.
bool SetsColors(const QString& safe);

}  // namespace vorn
