#include "mail/codec/charset/short_text.h"

#include <algorithm>
#include <climits>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/charset/reading_cost.h"

namespace vorn {
namespace {

using Family = Charset::Family;

constexpr int kRare = 15;

bool IsShort(QByteArrayView bytes) {
  constexpr qsizetype kMostBytes = 256;
  constexpr qsizetype kMostHigh = 18;
  if (bytes.size() > kMostBytes) return false;
  const auto high = std::count_if(bytes.begin(), bytes.end(), IsHighByte);
  return high > 0 && high <= kMostHigh;
}

bool HasHalfKana(const QString& text) {
  return std::any_of(text.begin(), text.end(), IsHalfKana);
}

bool HasRare(const QString& text) {
  return std::any_of(text.begin(), text.end(), [](QChar c) {
    return c.unicode() >= 0x80 && JapaneseCost(0, c.unicode()) >= kRare;
  });
}

}  // namespace

bool IsUsualJapanese(const QString& text) {
  const auto isLetter = [](QChar c) { return c.unicode() < 0x80 && c.isLetter(); };
  return !HasHalfKana(text) && !HasRare(text) && std::none_of(text.begin(), text.end(), isLetter);
}

namespace {

// A label is believed unless what it gives is strange.
bool IsBelieved(const Charset& declared, const DecodedText& reading, const Surroundings& around) {
  if (!reading.clean) return false;
  if (declared.family == Family::Utf8) return true;
  if (HasHalfKana(reading.text)) {
    const bool isEightBit = declared.family == Family::Jis;
    return !isEightBit && !around.areLabelsWrong && AreHalfKanaWords(reading.text);
  }
  return !HasRare(reading.text);
}

// Two bytes of any code may form a letter of UTF-8, and a rare ideograph with what follows it a
// rarer one or one before a letter. Japanese characters have three bytes there.
bool IsUsualUtf8(const QString& text) {
  const auto isJapanese = [](char16_t c) {
    const bool isAmong = (c >= 0x2000 && c < 0x3400) || (c >= 0x4E00 && c < 0xA000) || c >= 0xFF00;
    return isAmong && JapaneseCost(0, c) < kRare;
  };
  for (qsizetype at = 0; at < text.size(); ++at) {
    const char16_t c = text[at].unicode();
    const bool isFree = at == 0 || c <= ' ' || text[at - 1].unicode() < 0x80;
    if (c < 0x80 ? !isFree : !isJapanese(c)) return false;
  }
  return true;
}

// What a label, or the lack of an escape under one, is worth for a reading.
int Bonus(Family family, const QString& text, const Charset& declared, const Surroundings& around) {
  constexpr int kWord = 12;
  constexpr int kAround = 16;
  constexpr int kKana = 5;  // the one thing that is written in eight bits under a label of JIS
  int bonus = family == around.code.family ? kAround : 0;
  if (declared.family == Family::Jis) {
    bonus += family == Family::ShiftJis && AreHalfKanaWords(text) ? kKana : 0;
  } else if (family == declared.family) {
    bonus += kWord;
  }
  return bonus;
}

}  // namespace

Charset CodeOfShortText(QByteArrayView bytes, const Charset& declared, bool atCut,
                        const Surroundings& around) {
  constexpr int kErrorCost = 12;  // beyond what it costs in a longer text
  const bool isJapanese = declared.family > Family::Ascii && declared.family < Family::Other;
  if (!isJapanese || !IsShort(bytes) || HasJisEscape(bytes)) return declared;
  if (declared.family == Family::Utf8 && bytes.isValidUtf8()) return declared;
  const DecodedText asDeclared = Decode(declared, bytes, atCut);
  if (IsBelieved(declared, asDeclared, around)) return declared;
  // A rare name under a right label is no reason to look at what stands around it.
  const bool isDoubtful = !asDeclared.clean || around.areLabelsWrong;
  const Surroundings counted = isDoubtful ? around : Surroundings();
  Charset best = declared;
  int bestCost = INT_MAX;
  const auto consider = [&](const Charset& charset, const DecodedText& reading) {
    const auto errors = static_cast<int>(reading.text.count(QChar::ReplacementCharacter));
    const int cost = JapaneseCost(reading.text) + errors * kErrorCost -
                     Bonus(charset.family, reading.text, declared, counted);
    if (cost >= bestCost) return;
    best = charset;
    bestCost = cost;
  };
  consider(declared, asDeclared);
  for (const Family family : {Family::Utf8, Family::Euc, Family::ShiftJis}) {
    const DecodedText reading = Decode({family, {}}, bytes, atCut);
    if (family == declared.family || !reading.clean) continue;
    const bool isUtf8 = family == Family::Utf8 && bytes.isValidUtf8();
    if (isUtf8 && (!asDeclared.clean || IsUsualUtf8(reading.text))) return {family, {}};
    if (family == Family::Utf8) continue;
    consider({family, {}}, reading);
  }
  return best;
}

}  // namespace vorn
