#pragma once

#include "mail/codec/charset/code_page_932.h"
#include "mail/codec/charset/code_reader.h"
#include "mail/codec/charset/reading_cost.h"

namespace vorn {

/// Which byte of a run of pairs that has one too many is the odd one: where leaving it out gives
/// the most usual text. A byte that was lost leaves one behind that is as good as odd.
template <typename CharacterAt>
qsizetype OddByte(QByteArrayView run, CharacterAt characterAt) {
  const auto read = [&](qsizetype at) {
    if (at < 0) return char16_t(0);
    const char16_t character = characterAt(run[at], run[at + 1]);
    return character == 0 ? char16_t(QChar::ReplacementCharacter) : character;
  };
  const auto cost = [&](qsizetype at) { return JapaneseCost(read(at - 2), read(at)); };
  // At first the byte before all pairs; each step takes one pair from behind it to before it. The
  // first pair behind it follows nothing.
  const auto opening = [&](qsizetype at) { return JapaneseCost(0, read(at)); };
  int sum = 0;  // but for that first one
  for (qsizetype at = 3; at + 1 < run.size(); at += 2) sum += cost(at);
  int best = sum + (run.size() > 2 ? opening(1) : 0);
  qsizetype odd = 0;
  for (qsizetype at = 0; at + 2 < run.size(); at += 2) {
    sum += cost(at);
    const bool isLast = at + 4 >= run.size();
    if (!isLast) sum -= cost(at + 3);
    const int whole = sum + (isLast ? 0 : opening(at + 3));
    if (whole > best) continue;
    best = whole;
    odd = at + 2;
  }
  return odd;
}

/// A run of pairs, with an error for the byte that makes it odd.
template <typename CharacterAt>
void TakePairs(CodeReader& reader, qsizetype length, CharacterAt characterAt) {
  const char* const run = reader.Next(length).data();
  qsizetype odd = length;
  if (length % 2 != 0) {
    odd = reader.IsCutAfter(length) ? length - 1 : OddByte(reader.Next(length), characterAt);
  }
  for (qsizetype at = 0; at < length; at += 2) {
    if (at == odd) {
      at == length - 1 && reader.IsCutAfter(length) ? reader.PutCutOff() : reader.PutError();
      ++at;
    }
    if (at + 1 < length) reader.PutOrError(characterAt(run[at], run[at + 1]));
  }
  reader.Skip(length);
}
/// The character of two bytes of the plane that both codes share, which begins at a byte of its own
/// in either.
template <unsigned first>
class FromPair {
 public:
  char16_t operator()(char lead, char trail) const {
    const unsigned row = static_cast<unsigned char>(lead) - first;
    const unsigned cell = static_cast<unsigned char>(trail) - first;
    return row < 94 && cell < 94 ? plane_[row * 94 + cell] : char16_t(0);
  }

 private:
  const char16_t* plane_ = CodePage932::Instance().Plane();
};
using FromEucPair = FromPair<0xA1>;
using FromJisPair = FromPair<0x21>;

/// The character of a pair behind the mark of a third set: JIS X 0212, and what IBM and users put
/// beside it; 0 when there is none.
char16_t FromThreeBytes(unsigned row, unsigned cell);

}  // namespace vorn
