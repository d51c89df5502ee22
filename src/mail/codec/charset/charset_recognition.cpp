#include "mail/codec/charset/charset_recognition.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/reading_cost.h"

namespace vorn {
namespace {

using Family = Charset::Family;

// Enough to tell; a long text is not decoded three times over.
constexpr qsizetype kSampleBytes = 64 * 1024;

constexpr char kWesternCode[] = "windows-1252";

// Whether any escape is followed by bytes that `isWanted` says yes to; beyond the end they are 0.
template <typename IsWanted>
bool AnyEscape(QByteArrayView bytes, IsWanted isWanted) {
  const std::string_view text(bytes.data(), static_cast<size_t>(bytes.size()));
  const auto byteAt = [text](size_t at) { return at < text.size() ? text[at] : '\0'; };
  for (size_t at = text.find('\x1B'); at < text.size(); at = text.find('\x1B', at + 1)) {
    if (isWanted(byteAt(at + 1), byteAt(at + 2), byteAt(at + 3))) return true;
  }
  return false;
}

constexpr qsizetype kSurelyWords = 8;
constexpr qsizetype kRareShare = 6;  // of the kana that are halves of them

// Whether a kana stands where it may: a voicing mark behind one that has a voiced form, ｬ, ｭ and ｮ
// behind those that they go with, and none that no word begins with (small ones, ｰ and ﾝ) at the
// begin of one.
bool StandsWell(const QString& text, qsizetype at) {
  const char16_t kana = text[at].unicode();
  const char16_t before = at > 0 ? text[at - 1].unicode() : 0;
  const bool isHa = before >= 0xFF8A && before <= 0xFF8E;
  if (kana == 0xFF9F) return isHa;
  const bool isSmallY = kana >= 0xFF6C && kana <= 0xFF6E;
  if (isSmallY) return QStringView(u"ｷｼﾁﾆﾋﾐﾘﾞﾟ").contains(QChar(before));
  if (kana == 0xFF9E) return isHa || before == 0xFF73 || (before >= 0xFF76 && before <= 0xFF84);
  const bool endsWord = (kana >= 0xFF67 && kana <= 0xFF70) || kana == 0xFF9D;
  return before >= 0x80 || !endsWord;
}

// Half-width kana in Shift_JIS are ideographs in EUC, of which an unlikely share is of those that
// are seldom used (level 2, from row 48 on): those that the kana from ﾐ on begin.
bool AreRareInEuc(QByteArrayView bytes) {
  qsizetype kana = 0;
  qsizetype rare = 0;
  for (qsizetype at = 0; at < bytes.size(); ++at) {
    if ((bytes[at] & 0x80) == 0) continue;
    ++kana;
    if (at + 1 == bytes.size()) break;
    rare += static_cast<unsigned char>(bytes[at]) >= 0xD0 ? 1 : 0;
    ++at;
    kana += (bytes[at] & 0x80) != 0 ? 1 : 0;
  }
  return kana >= kSurelyWords && rare * kRareShare >= kana;
}

// Whether half-width kana are enough to be words, without the signs that symbols of EUC give.
bool AreKanaAlone(const QString& text) {
  constexpr qsizetype kWord = 4;
  const auto isSign = [](QChar c) { return c.unicode() >= 0xFF61 && c.unicode() <= 0xFF65; };
  return std::count_if(text.begin(), text.end(), IsHalfKana) >= kWord &&
         std::none_of(text.begin(), text.end(), isSign);
}

}  // namespace

bool AreHalfKanaWords(const QString& text) {
  for (qsizetype at = 0; at < text.size(); ++at) {
    if (text[at].unicode() < 0x80) continue;
    if (!IsHalfKana(text[at]) || !StandsWell(text, at)) return false;
  }
  return true;
}

namespace {

// A code read as another one gives half-width kana, rare ideographs and private characters where
// the right one gives kana and common ideographs.
int CharacterWeight(char16_t c) {
  if (c < 0x80) return c < 0x20 && c != '\r' && c != '\n' && c != '\t' ? -20 : 0;
  if (c >= 0x3041 && c <= 0x3096) return 12;                 // hiragana
  if (c >= 0x30A1 && c <= 0x30FC) return 8;                  // katakana
  if (c == 0x3001 || c == 0x3002 || c == 0x3000) return 10;  // 、。 and the wide blank
  if (c >= 0x300C && c <= 0x3011) return 6;                  // brackets
  if (c >= 0xFF01 && c <= 0xFF5E) return 6;                  // wide ASCII
  if (c >= 0xFF61 && c <= 0xFF9F) return -6;                 // half-width kana
  if (c >= 0xE000 && c <= 0xF8FF) return -20;                // private use
  if (c == QChar::ReplacementCharacter) return -25;
  if (c >= 0x4E00 && c <= 0x9FFF) return 5;
  return 0;
}

}  // namespace

QByteArrayView Telling(QByteArrayView bytes, qsizetype enough) {
  constexpr qsizetype kBefore = 8;
  const auto* const first = std::find_if(bytes.begin(), bytes.end(),
                                         [](char c) { return (c & 0x80) != 0 || c == '\x1B'; });
  const qsizetype start = qMax(first - bytes.begin() - kBefore, qsizetype{0});
  bytes = bytes.sliced(start - start % 4);  // in no midst of a character of any code
  return bytes.first(qMin(bytes.size(), enough));
}

// Per character of the reading, so that a code with more characters does not win by their number.
double Likelihood(const QString& text) {
  int sum = 0;
  int count = 0;
  for (const QChar c : text) {
    sum += CharacterWeight(c.unicode());
    count += c.unicode() >= 0x80 ? 1 : 0;
  }
  return count == 0 ? 0 : static_cast<double>(sum) / count;
}

bool HasJisEscape(QByteArrayView bytes) {
  return AnyEscape(bytes, [](char first, char second, char third) {
    return (first == '$' && (second == '@' || second == 'B' || (second == '(' && third == 'D'))) ||
           (first == '(' && (second == 'J' || second == 'I' || second == 'B'));
  });
}

bool HasForeignEscape(QByteArrayView bytes) {
  return AnyEscape(bytes, [](char first, char second, char third) {
    return (first == '$' && (second == 'A' || (second == '(' && third == 'C'))) ||
           (first == '.' && (second == 'A' || second == 'F'));
  });
}

namespace {

// Whether bytes have no errors in a code. A start is tried first, as most other codes fail there.
std::optional<QString> ReadWithoutErrors(Family family, QByteArrayView bytes, bool atCut) {
  constexpr qsizetype kStart = 256;
  if (!Decode({family, {}}, bytes.first(qMin(bytes.size(), kStart)), true).clean) return {};
  DecodedText decoded = Decode({family, {}}, bytes, atCut);
  return decoded.clean ? std::optional(std::move(decoded.text)) : std::nullopt;
}

// Letters that hardly any mail has, but single ideographs of EUC may form.
bool AreStrangeLetters(const QString& utf8) {
  return std::all_of(utf8.begin(), utf8.end(), [](QChar character) {
    const char16_t c = character.unicode();
    return c < 0x80 || (c >= 0x0250 && c < 0x0370) || (c >= 0x0700 && c < 0x0800);
  });
}

// Bytes that fit no code surely: whichever reading explains them best, errors counted. One in which
// most is strange explains nothing.
Charset LikeliestCharset(QByteArrayView bytes, bool hasJisEscape, bool atCut) {
  Charset best;
  int bestCost = 0;
  const auto consider = [&](const Charset& charset, int cost) {
    if (best.family != Family::Unknown && cost >= bestCost) return;
    best = charset;
    bestCost = cost;
  };
  if (hasJisEscape) {
    consider({Family::Jis, {}}, JapaneseCost(Decode({Family::Jis, {}}, bytes, atCut).text));
  }
  const QString utf8 = Decode({Family::Utf8, {}}, bytes, atCut).text;
  consider({Family::Utf8, {}}, qMin(JapaneseCost(utf8), WesternCost(utf8)));
  for (const Family family : {Family::Euc, Family::ShiftJis}) {
    consider({family, {}}, JapaneseCost(Decode({family, {}}, bytes, atCut).text));
  }
  const Charset western{Family::Other, kWesternCode};
  consider(western, WesternCost(Decode(western, bytes).text));

  constexpr int kStrange = 11;
  const auto high = std::count_if(bytes.begin(), bytes.end(), IsHighByte);
  const qsizetype plain = bytes.size() - high;
  const bool isStrange = bestCost - plain * 5 > high * kStrange;
  return isStrange && best.family != Family::Jis ? Charset() : best;
}

// Text of two bytes a character that says so at its beginning. Only there the two bytes mean that.
bool HasWideMark(QByteArrayView bytes) {
  return bytes.size() >= 4 && (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF"));
}

}  // namespace

Charset RecognizeCharset(QByteArrayView bytes, bool atCut) {
  if (HasWideMark(bytes)) return {Family::Other, "UTF-16"};
  const QByteArrayView sample = Telling(bytes, kSampleBytes);
  atCut = atCut || sample.end() != bytes.end();
  bytes = sample;
  const bool hasHighBytes = std::any_of(bytes.begin(), bytes.end(), IsHighByte);
  const bool hasJisEscape = HasJisEscape(bytes);
  if (hasJisEscape && (!hasHighBytes || Decode({Family::Jis, {}}, bytes, atCut).clean)) {
    return {Family::Jis, {}};
  }
  if (!hasHighBytes) return {Family::Ascii, {}};
  // Other codes hardly ever happen to be well-formed UTF-8.
  const auto utf8 = ReadWithoutErrors(Family::Utf8, bytes, atCut);
  if (utf8 && !AreStrangeLetters(*utf8)) return {Family::Utf8, {}};

  // A stray byte among escapes may form a character of another code, which tells nothing.
  const auto readAs = [&](Family family) {
    return hasJisEscape ? std::nullopt : ReadWithoutErrors(family, bytes, atCut);
  };
  const auto euc = readAs(Family::Euc);
  if (euc && IsSurelyJapanese(*euc)) return {Family::Euc, {}};
  if (utf8) {
    const bool isEuc = euc && JapaneseCost(*euc) < JapaneseCost(*utf8);
    return {isEuc ? Family::Euc : Family::Utf8, {}};
  }
  const auto shiftJis = readAs(Family::ShiftJis);
  if (shiftJis && IsSurelyJapanese(*shiftJis)) return {Family::ShiftJis, {}};
  const bool isKana = shiftJis && AreHalfKanaWords(*shiftJis);
  if (isKana && (euc ? AreRareInEuc(bytes) : AreKanaAlone(*shiftJis))) {
    return {Family::ShiftJis, {}};
  }
  constexpr qsizetype kEnough = 4096;
  const QByteArrayView telling = hasJisEscape ? bytes : Telling(bytes, kEnough);
  return LikeliestCharset(telling, hasJisEscape, atCut || telling.end() != bytes.end());
}

bool LooksJapanese(const QString& text) {
  return Likelihood(text) > 0;
}

int CodeNumber(const Charset& charset) {
  switch (charset.family) {
    case Family::Jis:
      return 0;
    case Family::Euc:
      return 1;
    case Family::ShiftJis:
      return 2;
    default:
      return -1;
  }
}

}  // namespace vorn
