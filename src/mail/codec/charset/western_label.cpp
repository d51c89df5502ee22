#include "mail/codec/charset/western_label.h"

#include <algorithm>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/reading_cost.h"

namespace vorn {
namespace {

constexpr char16_t kNoBreakSpace = 0xA0;

// Half-width kana are what Western letters give, and the same sign again and again proves nothing.
bool HasJapaneseWords(const QString& text) {
  constexpr char16_t kFirst = 0x3001;
  constexpr int kUsual = 10;
  constexpr int kRareCost = 15;
  constexpr qsizetype kDifferent = 2;
  constexpr qsizetype kError = 3;
  qsizetype usual = 0;
  qsizetype strange = 0;
  QString different;
  for (const QChar character : text) {
    const char16_t c = character.unicode();
    if (c < kFirst) continue;
    const int cost = JapaneseCost(0, c);
    if (c == QChar::ReplacementCharacter) {
      strange += kError;
    } else if (IsHalfKana(c) || cost >= kRareCost) {
      ++strange;
    } else if (cost <= kUsual) {
      ++usual;
      if (different.size() < kDifferent && !different.contains(character)) different += character;
    }
  }
  return different.size() == kDifferent && usual >= 2 * strange;
}

bool IsIn(QStringView signs, QChar c) {
  return signs.contains(c);
}

bool Opens(QChar c) {
  return IsIn(u"“‘„‚¿¡«»‹›–—•·°£€", c);
}

bool Closes(QChar c) {
  return IsIn(u"”“’‘»«›‹…–—·™®©°ºª€²³¹", c);
}

bool Joins(QChar c) {
  return IsIn(u"’–—·…", c);
}

// Whether letters that stand together may do so: in one case, as the begin of a sentence, or as a
// list of pairs (ÄäÖö).
bool AreOfOneWord(QStringView letters) {
  const auto isUpper = [](QChar c) { return c.isUpper(); };
  const auto uppers = std::count_if(letters.begin(), letters.end(), isUpper);
  if (uppers == 0 || uppers == letters.size()) return true;
  if (uppers == 1 && isUpper(letters.front())) return true;
  if (letters.size() % 2 != 0) return false;
  for (qsizetype at = 0; at < letters.size(); at += 2) {
    if (letters[at].toLower() != letters[at + 1].toLower()) return false;
  }
  return true;
}

// Whether a character, or several of it, may stand between these.
bool MayStandAlone(QChar c, QChar before, QChar after) {
  if (c.unicode() < kNoBreakSpace || c == u'ƒ') return false;
  if (c.isLetter() || Joins(c)) return true;
  const bool isQuote = Opens(c) || Closes(c);
  return !after.isLetter() || (!isQuote && !before.isLetter());
}

// Whether a row of characters over ASCII may stand in a Western text. `before` and `after` are its
// neighbours, blanks where there are none.
bool IsWestern(QStringView row, QChar before, QChar after) {
  while (!row.isEmpty() && Opens(row.front()) && !before.isLetter()) {
    before = row.front();
    row = row.sliced(1);
  }
  while (!row.isEmpty() && Closes(row.back()) && (!after.isLetter() || Joins(row.back()))) {
    after = row.back();
    row.chop(1);
  }
  if (row.isEmpty()) return true;
  if (std::all_of(row.begin(), row.end(), [row](QChar c) { return c == row.front(); })) {
    return MayStandAlone(row.front(), before, after);
  }
  qsizetype begin = 0;  // of the letters between the signs that may join them
  for (qsizetype at = 0; at <= row.size(); ++at) {
    if (at < row.size() && row[at].isLetter() && !IsIn(u"ƒªº", row[at])) continue;
    if (at < row.size() && !Joins(row[at])) return false;
    if (at > begin && !AreOfOneWord(row.sliced(begin, at - begin))) return false;
    begin = at + 1;
  }
  return true;
}

// Whether half of what is not ASCII is in rows that no Western text has.
bool IsStrangeWestern(const QString& text) {
  const auto isHigh = [](QChar c) { return c.unicode() >= 0x80 && c.unicode() != kNoBreakSpace; };
  qsizetype high = 0;
  qsizetype strange = 0;
  for (qsizetype at = 0; at < text.size();) {
    if (!isHigh(text[at])) {
      ++at;
      continue;
    }
    const auto begin = text.begin() + at;
    const qsizetype length = std::find_if_not(begin, text.end(), isHigh) - begin;
    const QChar before = at > 0 ? text[at - 1] : QChar(u' ');
    const QChar after = at + length < text.size() ? text[at + length] : QChar(u' ');
    high += length;
    if (!IsWestern(QStringView(text).sliced(at, length), before, after)) strange += length;
    at += length;
  }
  return high > 0 && strange * 2 >= high;
}

}  // namespace

bool IsPlainlyJapanese(const QString& japanese, const QString& western) {
  return HasJapaneseWords(japanese) && IsStrangeWestern(western);
}

}  // namespace vorn
