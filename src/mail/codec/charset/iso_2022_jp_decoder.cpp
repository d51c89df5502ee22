#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/charset/iconv_decoder.h"
#include "mail/codec/charset/japanese_decoders.h"
#include "mail/codec/charset/pair_runs.h"
#include "mail/codec/charset/realigned_text.h"

namespace vorn {
namespace {

enum class JisSet { Ascii, Roman, Kana, X0208, X0212, X0213Plane1, X0213Plane2, Own };

struct Escape {
  QByteArrayView sequence;
  JisSet set;
};

constexpr Escape kEscapes[] = {
    {"\x1B(B", JisSet::Ascii},        {"\x1B(J", JisSet::Roman},
    {"\x1B(H", JisSet::Roman},        {"\x1B(I", JisSet::Kana},
    {"\x1B$@", JisSet::X0208},        {"\x1B$B", JisSet::X0208},
    {"\x1B$(@", JisSet::X0208},       {"\x1B$(B", JisSet::X0208},
    {"\x1B$(D", JisSet::X0212},       {"\x1B$(O", JisSet::X0213Plane1},
    {"\x1B$(Q", JisSet::X0213Plane1}, {"\x1B$(P", JisSet::X0213Plane2},
    {"\x1B$(?", JisSet::Own},   // rows of the user's own (ISO-2022-JP-MS)
    {"\x1B&@", JisSet::X0208},  // announces the 1990 revision, followed by ESC $ B
};

bool IsDoubleByte(JisSet set) {
  return set >= JisSet::X0208;
}

bool TakeEscape(CodeReader& reader, JisSet& set) {
  // The two that stand at every change between ASCII and Japanese.
  const bool isAscii = reader.Peek(1) == '(' && reader.Peek(2) == 'B';
  if (isAscii || (reader.Peek(1) == '$' && reader.Peek(2) == 'B')) {
    set = isAscii ? JisSet::Ascii : JisSet::X0208;
    reader.Skip(3);
    return true;
  }
  for (const Escape& escape : kEscapes) {
    if (!reader.StartsWith(escape.sequence)) continue;
    set = escape.set;
    reader.Skip(escape.sequence.size());
    return true;
  }
  return false;
}

// Where Unicode keeps the characters that users define: 94 to a row.
constexpr char16_t kFirstOwn = 0xE000;
constexpr unsigned kOwnRows = 20;

char16_t FromOwnRow(unsigned row, unsigned cell) {
  return row <= kOwnRows ? static_cast<char16_t>(kFirstOwn + (row - 1) * 94 + cell - 1)
                         : char16_t(0);
}

// Of the sets that are rare, pair by pair.
void TakeRarePair(CodeReader& reader, JisSet set) {
  const unsigned row = reader.Take() - 0x20;
  const int trail = reader.Peek();
  if (trail < 0) return reader.PutCutOff();
  if (!InRange(trail, 0x21, 0x7E)) return reader.PutError();  // the odd byte is read for itself
  const unsigned cell = reader.Take() - 0x20;
  if (set == JisSet::X0212) return reader.PutOrError(FromThreeBytes(row, cell));
  if (set == JisSet::Own) return reader.PutOrError(FromOwnRow(row, cell));
  const JisX0213Character character = FromJisX0213(set == JisSet::X0213Plane2 ? 2 : 1, row, cell);
  reader.PutOrError(character.first);
  if (character.second != 0) reader.Put(character.second);
}

// Whether bytes are pairs of usual Japanese text, up to one odd byte.
bool ArePairs(QByteArrayView run) {
  if (run.size() < 2) return false;
  CodeReader reader(run, false);
  TakePairs(reader, run.size(), FromJisPair());
  return Likelihood(reader.Finish().text) > 0;
}

// A return to ASCII where nothing else began: the escape byte at the begin was lost. Goes back to
// what follows it.
bool TakeLostStart(CodeReader& reader, qsizetype line) {
  const QByteArrayView before = reader.Since(line);
  for (const QByteArrayView start : {"$B", "$@"}) {
    const qsizetype at = before.indexOf(start);
    if (at < 0) continue;
    const QByteArrayView run = before.sliced(at + 2);
    const bool isWhole = std::all_of(run.begin(), run.end(), [](char c) { return c > 0x20; });
    if (!isWhole || !ArePairs(run)) continue;
    reader.GoBack(run.size() + 2);
    reader.Skip(2);
    reader.PutError();
    return true;
  }
  return false;
}

// Where the return to ASCII stands in a run that lost its escape byte: there nothing else returns.
qsizetype LostReturn(CodeReader& reader, qsizetype length) {
  const QByteArrayView run = reader.Next(length);
  if (reader.HasReturnAhead(length)) return length;
  for (qsizetype at = run.indexOf('('); at >= 0 && at + 1 < length; at = run.indexOf('(', at + 1)) {
    if (run[at + 1] == 'B' || run[at + 1] == 'J') return at;
  }
  return length;
}

// A run of pairs that is odd, holds what is none or lost its end.
void TakeDamagedRun(CodeReader& reader, JisSet& set) {
  const qsizetype length = reader.RunLength(0x21, 0x7E);
  const qsizetype end = LostReturn(reader, length);
  TakePairs(reader, end, FromJisPair());
  if (end == length) return;
  reader.Skip(2);
  if (end % 2 == 0) reader.PutError();  // where it is odd, one more byte has been marked
  set = JisSet::Ascii;
}

// Whether pairs up to a return to ASCII begin there: what stands before them ended nothing. As
// pairs the bytes are as usual as Latin letters would be, but for an odd one.
bool ArePairsBeforeReturn(const CodeReader& reader, qsizetype ahead) {
  constexpr int kLetter = 5;
  constexpr int kOdd = 20;
  qsizetype length = 0;
  while (InRange(reader.Peek(ahead + length), 0x21, 0x7E)) ++length;
  const bool returns =
      reader.Peek(ahead + length) == 0x1B && reader.Peek(ahead + length + 1) == '(';
  if (length < 2 || !returns) return false;
  const QByteArrayView run = reader.Next(ahead + length).sliced(ahead);
  CodeReader pairs(run, false);
  TakePairs(pairs, length, FromJisPair());
  return JapaneseCost(pairs.Finish().text) <= length * kLetter + kOdd;
}

// An escape sequence of which a byte was lost or changed.
void TakeBrokenEscape(CodeReader& reader, JisSet& set, bool atCut) {
  reader.Skip(1);
  if (!reader.AtEnd() || !atCut) reader.PutError();
  const auto skipAny = [&reader](QByteArrayView characters) {
    if (!reader.AtEnd() && characters.contains(static_cast<char>(reader.Peek()))) reader.Skip(1);
  };
  const auto isFinal = [&reader](qsizetype ahead) {
    return reader.Peek(ahead) == 'B' || reader.Peek(ahead) == 'J' || reader.Peek(ahead) == '@';
  };
  if (IsDoubleByte(set)) {
    if (ArePairsBeforeReturn(reader, 0)) return;
    const bool isOther = reader.Peek() != '(' && !isFinal(0) && isFinal(1);
    if (isOther || (reader.Peek() == '(' && !isFinal(1))) reader.Skip(1);
    skipAny("(");
    skipAny("BJ");
    set = JisSet::Ascii;
    return;
  }
  for (qsizetype length = 0; length <= 2; ++length) {
    const bool isStart = length == 0 || reader.Peek() == '$' || isFinal(length - 1);
    if (!isStart || reader.Peek(length - 1) < 0) continue;
    if (!ArePairsBeforeReturn(reader, length)) continue;
    reader.Skip(length);
    set = JisSet::X0208;
    return;
  }
}

// Whether a line that ends in a set of double bytes goes on in the next one: that holds pairs alone
// and comes to an end of its own. Otherwise the return to ASCII was forgotten.
bool GoesOnInNextLine(CodeReader& reader) {
  constexpr qsizetype kLineEnds = 8;  // some blank lines
  qsizetype ahead = 0;
  while (ahead < kLineEnds && InRange(reader.Peek(ahead), '\n', '\r')) ++ahead;
  qsizetype run = 0;
  while (InRange(reader.Peek(ahead + run), 0x21, 0x7E)) ++run;
  const int after = reader.Peek(ahead + run);
  const bool isWhole = run > 0 && run % 2 == 0;
  return ArePairsBeforeReturn(reader, ahead) ||
         (isWhole && ((after == 0x1B && reader.Peek(ahead + run + 1) == '(') ||
                      (InRange(after, '\n', '\r') && reader.HasReturnAhead(ahead + run))));
}

}  // namespace

DecodedText DecodeIso2022Jp(QByteArrayView bytes, bool atCut) {
  const FromJisPair fromPair;
  CodeReader reader(bytes, atCut);
  JisSet set = JisSet::Ascii;
  bool shiftedOut = false;
  qsizetype line = 0;  // where what is ASCII since then begins
  while (!reader.AtEnd()) {
    if (reader.Peek() == 0x1B) {
      if (set == JisSet::Ascii && reader.StartsWith("\x1B(") && TakeLostStart(reader, line)) {
        set = JisSet::X0208;
        shiftedOut = false;
        continue;
      }
      if (TakeEscape(reader, set)) {
        shiftedOut = false;
      } else {
        TakeBrokenEscape(reader, set, atCut);
      }
      line = reader.Position();
      continue;
    }
    if (IsDoubleByte(set) && !shiftedOut && InRange(reader.Peek(), 0x21, 0x7E)) {
      if (set == JisSet::X0208 && reader.TakeSoundPairs(0x21, 0x7E, fromPair)) {
        line = reader.Position();
        continue;
      }
      if (set == JisSet::X0208) {
        TakeDamagedRun(reader, set);
        line = reader.Position();
      } else {
        TakeRarePair(reader, set);
      }
      continue;
    }
    const unsigned byte = reader.Take();
    if (byte == 0x0E && !reader.HasShiftInAhead()) {
      reader.PutError();  // what an escape became
    } else if (byte == 0x0E || byte == 0x0F) {
      shiftedOut = byte == 0x0E;
    } else if (byte == '\n' || byte == '\r') {
      // A line that forgot to return does not spoil the next.
      if (!(IsDoubleByte(set) && GoesOnInNextLine(reader))) set = JisSet::Ascii;
      shiftedOut = false;
      reader.Put(static_cast<char16_t>(byte));
      line = reader.Position();
    } else if (InRange(static_cast<int>(byte), 0xA1, 0xDF)) {
      reader.Put(static_cast<char16_t>(kHalfKanaBase + byte));
    } else if (byte >= 0x80) {
      reader.PutError();
    } else if (byte <= 0x20 || byte == 0x7F) {
      reader.Put(static_cast<char16_t>(byte));
    } else if (shiftedOut || set == JisSet::Kana) {
      byte <= 0x5F ? reader.Put(static_cast<char16_t>(kHalfKanaBase + byte + 0x80))
                   : reader.PutError();
    } else {
      reader.Put(static_cast<char16_t>(byte));
    }
  }
  return reader.Finish();
}

}  // namespace vorn
