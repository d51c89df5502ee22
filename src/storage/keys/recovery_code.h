#pragma once

#include <QString>

namespace vorn::RecoveryCode {

/// A new code of 130 random bits, as it is shown: six groups of five letters, of which the last
/// four check the others. None is mistaken for another (Crockford's base 32).
QString Make();

/// A code that somebody typed, as `Make` writes it: blanks, dashes, small and full-width letters
/// are as good. Empty when it is none.
QString Read(const QString& typed);

/// Whether it is what a slip of the fingers makes of a code.
bool IsMistyped(const QString& typed);

}  // namespace vorn::RecoveryCode
