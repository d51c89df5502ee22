#include "mail/codec/charset/reading_cost.h"

#include <array>
#include <vector>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/charset/code_page_932.h"

namespace vorn {
namespace {

constexpr int kError = 20;
constexpr int kPrivate = 40;
constexpr int kControl = 20;
constexpr int kEscape = 40;         // which has a meaning in ISO-2022-JP alone
constexpr int kChange = 3;          // between Latin letters and Japanese, without a blank
constexpr int kHalfKanaBegins = 6;  // where they do, they are several
constexpr int kHalfKanaEnds = 4;
constexpr int kVoicing = 3;
constexpr int kRepeated = 3;

bool IsAsciiLetter(char16_t c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

int AsciiCost(char16_t c) {
  if (c == ' ' || c == '\r' || c == '\n' || c == '\t') return 3;
  if (c == 0x1B) return kEscape;
  return c < 0x20 || c == 0x7F ? kControl : 5;
}

int CostOf(char16_t c) {
  if (c < 0x80) return AsciiCost(c);
  if (c < 0xA0) return kControl;
  if (c >= 0x3041 && c <= 0x3049 && (c & 1) != 0) return 11;  // small vowels
  if (c >= 0x3041 && c <= 0x3096) return 6;                   // hiragana
  if (c >= 0x30A1 && c <= 0x30FC) return 8;                   // katakana
  if (c == 0x3001 || c == 0x3002 || c == 0x3000) return 6;    // 、。 and the wide blank
  if (c >= 0x300C && c <= 0x3011) return 8;                   // brackets
  if ((c >= 0xFF21 && c <= 0xFF3A) || (c >= 0xFF41 && c <= 0xFF5A)) return 10;  // wide letters
  if (c >= 0xFF01 && c <= 0xFF5E) return 8;                                     // wide ASCII
  if (c >= 0xFF61 && c <= 0xFF9F) return 7;                                     // half-width kana
  if (c >= 0xE000 && c <= 0xF8FF) return kPrivate;
  if (c == QChar::ReplacementCharacter) return kError;
  if (c >= 0x0370 && c <= 0x052F) return 15;  // Greek and Cyrillic
  if (c >= 0x2500 && c <= 0x257F) return 12;  // ruled lines
  if (c >= 0x4E00 && c <= 0x9FFF) return 18;
  return c >= 0x2000 ? 11 : 14;
}

// By character. Ideographs of level 1 (JIS X 0208) are what nearly all texts are written with.
const std::vector<quint8>& Costs() {
  static const std::vector<quint8> costs = [] {
    constexpr int kFirstRow = 16;
    constexpr int kFirstRareRow = 48;
    std::vector<quint8> table(0x10000);
    for (unsigned c = 0; c < 0x10000; ++c) {
      table[c] = static_cast<quint8>(CostOf(static_cast<char16_t>(c)));
    }
    const char16_t* const plane = CodePage932::Instance().Plane();
    for (int at = (kFirstRow - 1) * 94; at < (kFirstRareRow - 1) * 94; ++at) table[plane[at]] = 10;
    return table;
  }();
  return costs;
}

// The letters and signs over ASCII that Western texts have (windows-1252), by how usual they are.
enum class Kind : quint8 { Ascii, Letter, RareLetter, Capital, Opening, Sign, RareSign, Strange };

Kind ReadKind(char16_t c) {
  if (c < 0x80) return Kind::Ascii;
  if (QStringView(u"ðþýÿšžœ").contains(QChar(c))) return Kind::RareLetter;
  if (QStringView(u"¿¡\u00A0").contains(QChar(c))) return Kind::Opening;
  if (QStringView(u"×«»°§£©®²³·ªºµ‘’“”„–—…•€™").contains(QChar(c))) return Kind::Sign;
  if (c >= 0xDF && c <= 0xFF && c != 0xF7) return Kind::Letter;
  if (c >= 0xC0 && c < 0xDF && c != 0xD7) return Kind::Capital;
  if (QStringView(u"ŠŽŒ").contains(QChar(c))) return Kind::Capital;
  if (c < 0xA0 || c == QChar::ReplacementCharacter) return Kind::Strange;
  return Kind::RareSign;
}

Kind KindOf(char16_t c) {
  static const std::vector<Kind> kinds = [] {
    std::vector<Kind> table(0x10000);
    for (unsigned i = 0; i < 0x10000; ++i) table[i] = ReadKind(static_cast<char16_t>(i));
    return table;
  }();
  return kinds[c];
}

bool IsHighLetter(Kind kind) {
  return kind == Kind::Letter || kind == Kind::Capital || kind == Kind::RareLetter;
}

// A letter over ASCII among its neighbours, 0 where there are none. Two in a row are seldom, three
// are no word, but for one that is doubled.
int HighLetterCost(Kind kind, char16_t letter, char16_t before, char16_t beforeThat,
                   char16_t after) {
  const bool follows = IsHighLetter(KindOf(before));
  const bool isCrowded = follows && IsHighLetter(KindOf(beforeThat));
  const bool isAmong = IsAsciiLetter(before) || IsAsciiLetter(after);
  if (follows && QChar(letter).toLower() == QChar(before).toLower()) return 5;
  const bool isAmongCapitals = KindOf(before) == Kind::Capital || KindOf(after) == Kind::Capital;
  if (isCrowded && !(kind == Kind::Capital && isAmongCapitals)) return 14;
  if (kind == Kind::RareLetter) return isAmong && !follows ? 9 : 14;
  if (kind == Kind::Letter) return follows ? 8 : isAmong ? 5 : 9;
  const auto isCapital = [](char16_t c) { return c >= 'A' && c <= 'Z'; };
  const bool begins = !IsAsciiLetter(before) && !follows;
  const bool isWord = begins && (IsAsciiLetter(after) || KindOf(after) == Kind::Letter);
  if (isWord || isCapital(before) || isCapital(after)) return 7;
  if (isAmongCapitals) return 8;
  return !follows && !IsHighLetter(KindOf(after)) ? 9 : 14;
}

int WesternCostAt(const QString& text, qsizetype at) {
  const auto charAt = [&text](qsizetype place) {
    return place >= 0 && place < text.size() ? text[place].unicode() : char16_t(0);
  };
  const char16_t c = text[at].unicode();
  const Kind kind = KindOf(c);
  const bool isSign = kind == Kind::Opening || kind == Kind::Sign || kind == Kind::RareSign;
  if (isSign && c == charAt(at - 1)) return kRepeated;
  switch (kind) {
    case Kind::Ascii:
      return AsciiCost(c);
    case Kind::Letter:
    case Kind::RareLetter:
    case Kind::Capital:
      return HighLetterCost(kind, c, charAt(at - 1), charAt(at - 2), charAt(at + 1));
    case Kind::Opening:
      return 5;
    case Kind::Sign:
      return KindOf(charAt(at - 1)) == Kind::Sign ? 11 : 7;
    case Kind::RareSign:
      return 13;
    default:
      return c == QChar::ReplacementCharacter ? kError : 25;
  }
}

}  // namespace

int JapaneseCost(const QString& text) {
  const std::vector<quint8>& costs = Costs();
  int cost = 0;
  char16_t before = ' ';
  bool inHalfKana = false;  // words of them, with blanks between them
  for (const QChar character : text) {
    const char16_t c = character.unicode();
    const bool isVoicing = (c == 0xFF9E || c == 0xFF9F) && before >= 0xFF73 && before <= 0xFF8E;
    cost += isVoicing ? kVoicing : costs[c];
    if (IsHalfKana(c) && !inHalfKana) cost += kHalfKanaBegins;
    if (c != ' ') inHalfKana = IsHalfKana(c);
    if ((c >= 0x80 && IsAsciiLetter(before)) || (before >= 0x80 && IsAsciiLetter(c))) {
      cost += kChange;
    }
    before = c;
  }
  return cost;
}

int JapaneseCost(char16_t before, char16_t character) {
  const bool isKana = IsHalfKana(character);
  const bool wasKana = IsHalfKana(before);
  int cost = Costs()[character];
  // Rules and dashes come in rows.
  if (character == before && character >= 0x2000 && character < 0x3041) cost = kRepeated;
  if (isKana != wasKana && before != 0) cost += isKana ? kHalfKanaBegins : kHalfKanaEnds;
  if ((character >= 0x80 && IsAsciiLetter(before)) ||
      (before >= 0x80 && IsAsciiLetter(character))) {
    cost += kChange;
  }
  return cost;
}

int WesternCost(const QString& text) {
  int cost = 0;
  for (qsizetype at = 0; at < text.size(); ++at) cost += WesternCostAt(text, at);
  return cost;
}

bool IsSurelyJapanese(const QString& text) {
  constexpr int kUsual = 19;  // halves of a bit for a character
  const std::vector<quint8>& costs = Costs();
  qsizetype cost = 0;
  qsizetype count = 0;
  bool isUsual = true;
  for (const QChar character : text) {
    const char16_t c = character.unicode();
    if (c < 0x80) continue;
    ++count;
    cost += costs[c];
    isUsual = isUsual && !IsHalfKana(c) && costs[c] < kError;
  }
  return isUsual && count > 0 && cost * 2 <= count * kUsual;
}

}  // namespace vorn
