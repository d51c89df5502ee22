#pragma once

#include <QString>

namespace vorn {

/// How unlikely a text is as Japanese mail, in bits: kana cost least, then common ideographs, then
/// what a wrong code gives, with errors and private characters last. ASCII costs the same in every
/// reading, so that readings of the same bytes compare by their cost.
int JapaneseCost(const QString& text);

/// That of one character behind another, which is 0 where it is unknown.
int JapaneseCost(char16_t before, char16_t character);

/// The same as text in a Western language, where letters over ASCII stand among others.
int WesternCost(const QString& text);

/// Whether a Japanese reading without errors is so usual that no other one needs to be looked at.
bool IsSurelyJapanese(const QString& text);

}  // namespace vorn
