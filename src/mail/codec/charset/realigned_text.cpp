#include "mail/codec/charset/realigned_text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "mail/codec/charset/code_page_932.h"
#include "mail/codec/charset/reading_cost.h"

namespace vorn {
namespace {

constexpr int kNever = std::numeric_limits<int>::max();
constexpr char16_t kHalfKanaBase = 0xFF61 - 0xA1;

// How a place in the bytes is reached: the ways differ in the character that stands before it.
enum Way : size_t { Single, Pair, Error, kWays };
constexpr std::array<qsizetype, kWays> kLengths{1, 2, 1};

struct Step {
  int cost = kNever;
  char16_t character = 0;
  Way before = Single;
};
using Place = std::array<Step, kWays>;

char16_t SingleAt(unsigned byte) {
  if (byte < 0x80) return static_cast<char16_t>(byte);
  return byte >= 0xA1 && byte <= 0xDF ? static_cast<char16_t>(kHalfKanaBase + byte) : char16_t(0);
}

// The ways on from a place, each by the cheapest one to it.
void GoOn(std::vector<Place>& places, QByteArrayView bytes, qsizetype at, int errorCost) {
  const auto lead = static_cast<unsigned char>(bytes[at]);
  const auto trail = static_cast<unsigned char>(at + 1 < bytes.size() ? bytes[at + 1] : '\0');
  const std::array<char16_t, kWays> characters{
      SingleAt(lead), CodePage932::Instance().FromPair(lead, trail), QChar::ReplacementCharacter};
  for (size_t way = Single; way < kWays; ++way) {
    const char16_t character = characters[way];
    if (character == 0) continue;
    Step& next = places[static_cast<size_t>(at + kLengths[way])][way];
    for (size_t before = Single; before < kWays; ++before) {
      const Step& step = places[static_cast<size_t>(at)][before];
      if (step.cost == kNever) continue;
      const int cost =
          step.cost +
          (way == Error ? errorCost
                        : JapaneseCost(before == Error ? char16_t(0) : step.character, character));
      if (cost < next.cost) next = {cost, character, static_cast<Way>(before)};
    }
  }
}

}  // namespace

QString RealignShiftJis(QByteArrayView bytes, int errorCost) {
  std::vector<Place> places(static_cast<size_t>(bytes.size()) + 1);
  places[0][Error].cost = 0;
  for (qsizetype at = 0; at < bytes.size(); ++at) GoOn(places, bytes, at, errorCost);
  const auto cheaper = [](const Step& a, const Step& b) { return a.cost < b.cost; };
  const Place& last = places.back();
  auto way = static_cast<Way>(std::min_element(last.begin(), last.end(), cheaper) - last.begin());
  QString text;
  bool isMarked = false;  // two bytes that mean nothing are one character
  for (qsizetype at = bytes.size(); at > 0;) {
    const Step& step = places[static_cast<size_t>(at)][way];
    const bool isOther = way == Error && isMarked;
    if (!isOther) text += QChar(step.character);
    isMarked = way == Error && !isOther;
    at -= kLengths[way];
    way = step.before;
  }
  std::reverse(text.begin(), text.end());
  return text;
}

}  // namespace vorn
