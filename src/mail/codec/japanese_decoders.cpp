#include "mail/codec/japanese_decoders.h"

#include <algorithm>
#include <vector>

#include "mail/codec/charset_recognition.h"
#include "mail/codec/code_page_932.h"
#include "mail/codec/iconv_decoder.h"
#include "mail/codec/icu_converter.h"
#include "mail/codec/reading_cost.h"
#include "mail/codec/realigned_text.h"

namespace vorn {
namespace {

constexpr char16_t kHalfKanaBase = 0xFF61 - 0xA1;  // by the eight-bit byte of the kana

// The characters of JIS X 0212 by row and cell.
class JisX0212 {
 public:
  static const JisX0212& Instance() {
    static const JisX0212 instance;
    return instance;
  }

  char16_t At(unsigned row, unsigned cell) const {
    if (row < 1 || row > 94 || cell < 1 || cell > 94) return 0;
    return characters_[(row - 1) * 94 + cell - 1];
  }

 private:
  JisX0212() : characters_(94 * 94, 0) {
    IcuConverter table("EUC-JP");
    for (unsigned row = 1; row <= 94; ++row) {
      for (unsigned cell = 1; cell <= 94; ++cell) {
        const char bytes[] = {'\x8F', static_cast<char>(row + 0xA0),
                              static_cast<char>(cell + 0xA0)};
        const QString text = table.Decode(QByteArrayView(bytes, 3));
        if (text.size() == 1 && text[0] != QChar::ReplacementCharacter) {
          characters_[(row - 1) * 94 + cell - 1] = text[0].unicode();
        }
      }
    }
  }

  std::vector<char16_t> characters_;
};

// Where a byte comes next. It is asked again and again while a text is read, so that what was found
// is kept.
class Upcoming {
 public:
  explicit Upcoming(char byte) : byte_(byte) {}

  // The end where it does not.
  qsizetype From(QByteArrayView bytes, qsizetype from) {
    if (from < asked_ || from > found_) {
      found_ = bytes.indexOf(byte_, from);
      if (found_ < 0) found_ = bytes.size();
    }
    asked_ = from;
    return found_;
  }

 private:
  char byte_;
  qsizetype asked_ = 0;
  qsizetype found_ = -1;
};

// Reads bytes one by one and collects the text.
class Reader {
 public:
  // No byte gives more than one character, so the text is written into room for all of them.
  Reader(QByteArrayView bytes, bool atCut)
      : bytes_(bytes), atCut_(atCut), text_(bytes.size(), Qt::Uninitialized), out_(text_.data()) {}

  bool AtEnd() const { return at_ >= bytes_.size(); }
  unsigned Take() { return static_cast<unsigned char>(bytes_[at_++]); }
  // The byte `ahead` of the next one, or -1 beyond the end.
  int Peek(qsizetype ahead = 0) const {
    return at_ + ahead < bytes_.size() ? static_cast<unsigned char>(bytes_[at_ + ahead]) : -1;
  }
  void Skip(qsizetype count) { at_ += count; }
  bool StartsWith(QByteArrayView text) const { return bytes_.sliced(at_).startsWith(text); }

  // How many of the next bytes lie between the two.
  qsizetype RunLength(unsigned first, unsigned last) const {
    qsizetype end = at_;
    while (end < bytes_.size() && static_cast<unsigned char>(bytes_[end]) - first <= last - first) {
      ++end;
    }
    return end - at_;
  }
  // Whether what was shifted out is shifted in again in this line.
  bool HasShiftInAhead() {
    const qsizetype end = shiftIn_.From(bytes_, at_);
    return end < bytes_.size() && end < escape_.From(bytes_, at_) &&
           end < lineFeed_.From(bytes_, at_);
  }
  // Whether the next escape from there on returns to ASCII.
  bool HasReturnAhead(qsizetype ahead) {
    const qsizetype escape = escape_.From(bytes_, at_ + ahead);
    return escape + 1 < bytes_.size() && bytes_[escape + 1] == '(';
  }
  qsizetype Position() const { return at_; }
  QByteArrayView Since(qsizetype begin) const { return bytes_.sliced(begin, at_ - begin); }
  // Takes pairs of bytes between the two while all have characters; false when something else came
  // up, of which nothing was taken then.
  template <typename CharacterAt>
  bool TakeSoundPairs(unsigned first, unsigned last, CharacterAt characterAt) {
    const char* const end = bytes_.data() + bytes_.size();
    const char* in = bytes_.data() + at_;
    QChar* out = out_;
    const auto isOne = [first, last](char c) {
      return static_cast<unsigned char>(c) - first <= last - first;
    };
    for (; end - in > 1 && isOne(in[0]) && isOne(in[1]); in += 2) {
      const char16_t character = characterAt(in[0], in[1]);
      if (character == 0) return false;
      *out++ = QChar(character);
    }
    if (in < end && isOne(*in)) return false;
    at_ = in - bytes_.data();
    out_ = out;
    return true;
  }
  // Takes back bytes that gave a character each.
  void GoBack(qsizetype count) {
    at_ -= count;
    out_ -= count;
  }
  QByteArrayView Next(qsizetype count) const { return bytes_.sliced(at_, count); }
  bool IsCutAfter(qsizetype count) const { return atCut_ && at_ + count == bytes_.size(); }

  // What is put behind a place can be taken back.
  struct Mark {
    QChar* out;
    qsizetype errors;
  };
  Mark Here() const { return {out_, errors_}; }
  bool IsCleanSince(const Mark& mark) const { return errors_ == mark.errors; }
  QStringView TextSince(const Mark& mark) const { return {mark.out, out_}; }
  // A reading of the same bytes that has no more characters than they are.
  void PutInstead(const Mark& mark, const QString& text) {
    out_ = std::copy(text.begin(), text.end(), mark.out);
    errors_ = mark.errors + text.count(QChar::ReplacementCharacter);
  }

  void Put(char16_t character) { *out_++ = QChar(character); }
  void PutError() {
    Put(QChar::ReplacementCharacter);
    ++errors_;
  }
  // A character of which the end of the bytes cut something off.
  void PutCutOff() {
    if (!atCut_) PutError();
  }
  void PutOrError(char16_t character) { character == 0 ? PutError() : Put(character); }

  DecodedText Finish() {
    text_.truncate(out_ - text_.constData());
    return {std::move(text_), errors_ == 0};
  }

 private:
  QByteArrayView bytes_;
  bool atCut_;
  qsizetype at_ = 0;
  QString text_;
  QChar* out_;
  qsizetype errors_ = 0;
  Upcoming escape_{'\x1B'};
  Upcoming shiftIn_{'\x0F'};
  Upcoming lineFeed_{'\n'};
};

bool InRange(int byte, int first, int last) {
  return byte >= first && byte <= last;
}

// Which byte of a run of pairs that has one too many is the odd one: where leaving it out gives the
// most usual text. A byte that was lost leaves one behind that is as good as odd.
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

// A run of pairs, with an error for the byte that makes it odd.
template <typename CharacterAt>
void TakePairs(Reader& reader, qsizetype length, CharacterAt characterAt) {
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

// The character of two bytes of the plane that both codes share, which begins at a byte of its own
// in either.
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

// The three-byte codes: JIS X 0212, and what IBM and users put beside it.
char16_t FromThreeBytes(unsigned row, unsigned cell) {
  const char16_t character = JisX0212::Instance().At(row, cell);
  return character != 0 ? character : FromEucJpMs(row, cell);
}

}  // namespace

namespace {

bool IsHalfKana(QChar c) {
  return c.unicode() >= 0xFF61 && c.unicode() <= 0xFF9F;
}

// Half-width kana come as words. One or two beside wide characters are what is left of those behind
// a byte that was lost.
bool HasStrayKana(QStringView text) {
  const auto isWide = [&text](qsizetype at) {
    return at >= 0 && at < text.size() && text[at].unicode() >= 0x3041;
  };
  for (qsizetype at = 0; at < text.size(); ++at) {
    if (!IsHalfKana(text[at])) continue;
    const qsizetype begin = at;
    while (at < text.size() && IsHalfKana(text[at])) ++at;
    if (at - begin <= 2 && (isWide(begin - 1) || isWide(at))) return true;
  }
  return false;
}

// Bytes between two that are never the second of a pair: whatever is wrong ends there. Returns
// whether they may be wrong.
bool TakeShiftJisRun(Reader& reader, qsizetype length) {
  const CodePage932& page = CodePage932::Instance();
  const bool isCut = reader.IsCutAfter(length);
  const Reader::Mark begin = reader.Here();
  bool hasKana = false;
  for (const qsizetype end = reader.Position() + length; reader.Position() < end;) {
    const unsigned lead = reader.Take();
    if (lead <= 0x80) {
      reader.Put(static_cast<char16_t>(lead));
    } else if (lead - 0xA1 <= 0xDF - 0xA1) {
      hasKana = true;
      reader.Put(static_cast<char16_t>(kHalfKanaBase + lead));
    } else if (reader.Position() == end) {
      isCut&& lead != 0xA0 && lead <= 0xFC ? reader.PutCutOff() : reader.PutError();
    } else {
      const auto trail = static_cast<unsigned>(reader.Peek());
      const char16_t character = page.FromPair(lead, trail);
      // An ASCII byte after a stray lead byte is itself again.
      if (character != 0 || (trail >= 0x80 && lead != 0xA0 && lead <= 0xFC)) reader.Skip(1);
      reader.PutOrError(character);
    }
  }
  return !reader.IsCleanSince(begin) || (hasKana && HasStrayKana(reader.TextSince(begin)));
}

void RealignShiftJisRun(Reader& reader, const Reader::Mark& begin, QByteArrayView run, bool isCut) {
  constexpr int kError = 20;
  constexpr int kErrorUnseen = 30;  // where every byte has a meaning
  const bool isClean = reader.IsCleanSince(begin);
  QString text = RealignShiftJis(run, isClean ? kErrorUnseen : kError);
  if (isCut && text.endsWith(QChar::ReplacementCharacter)) text.chop(1);
  reader.PutInstead(begin, text);
}

}  // namespace

DecodedText DecodeShiftJis(QByteArrayView bytes, bool atCut) {
  constexpr qsizetype kLongest = 16 * 1024;  // of what is read again
  Reader reader(bytes, atCut);
  while (!reader.AtEnd()) {
    const qsizetype length = reader.RunLength(0x40, 0xFF);
    if (length == 0) {
      reader.Put(static_cast<char16_t>(reader.Take()));
      continue;
    }
    const QByteArrayView run = reader.Next(length);
    const bool isCut = reader.IsCutAfter(length);
    const Reader::Mark begin = reader.Here();
    if (TakeShiftJisRun(reader, length) && length <= kLongest) {
      RealignShiftJisRun(reader, begin, run, isCut);
    }
  }
  return reader.Finish();
}

DecodedText DecodeEucJp(QByteArrayView bytes, bool atCut) {
  const FromEucPair fromPair;
  Reader reader(bytes, atCut);
  while (!reader.AtEnd()) {
    if (InRange(reader.Peek(), 0xA1, 0xFE)) {
      if (!reader.TakeSoundPairs(0xA1, 0xFE, fromPair)) {
        TakePairs(reader, reader.RunLength(0xA1, 0xFE), fromPair);
      }
      continue;
    }
    const unsigned lead = reader.Take();
    if (lead < 0x80) {
      reader.Put(static_cast<char16_t>(lead));
      continue;
    }
    const bool threeBytes = lead == 0x8F;
    if (lead != 0x8E && !threeBytes) {
      reader.PutError();
      continue;
    }
    const int second = reader.Peek();
    const int third = threeBytes ? reader.Peek(1) : 0;
    if (second < 0 || (third < 0 && InRange(second, 0xA1, 0xFE))) {
      reader.Skip(second < 0 ? 0 : 1);
      reader.PutCutOff();
      continue;
    }
    char16_t character = 0;
    if (threeBytes) {
      character =
          FromThreeBytes(static_cast<unsigned>(second - 0xA0), static_cast<unsigned>(third - 0xA0));
    } else if (InRange(second, 0xA1, 0xDF)) {
      character = static_cast<char16_t>(kHalfKanaBase + static_cast<unsigned>(second));
    }
    if (second >= 0x80) reader.Skip(threeBytes && third >= 0x80 ? 2 : 1);
    reader.PutOrError(character);
  }
  return reader.Finish();
}

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

bool TakeEscape(Reader& reader, JisSet& set) {
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
void TakeRarePair(Reader& reader, JisSet set) {
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
  Reader reader(run, false);
  TakePairs(reader, run.size(), FromJisPair());
  return Likelihood(reader.Finish().text) > 0;
}

// A return to ASCII where nothing else began: the escape byte at the begin was lost. Goes back to
// what follows it.
bool TakeLostStart(Reader& reader, qsizetype line) {
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
qsizetype LostReturn(Reader& reader, qsizetype length) {
  const QByteArrayView run = reader.Next(length);
  if (reader.HasReturnAhead(length)) return length;
  for (qsizetype at = run.indexOf('('); at >= 0 && at + 1 < length; at = run.indexOf('(', at + 1)) {
    if (run[at + 1] == 'B' || run[at + 1] == 'J') return at;
  }
  return length;
}

// A run of pairs that is odd, holds what is none or lost its end.
void TakeDamagedRun(Reader& reader, JisSet& set) {
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
bool ArePairsBeforeReturn(const Reader& reader, qsizetype ahead) {
  constexpr int kLetter = 5;
  constexpr int kOdd = 20;
  qsizetype length = 0;
  while (InRange(reader.Peek(ahead + length), 0x21, 0x7E)) ++length;
  const bool returns =
      reader.Peek(ahead + length) == 0x1B && reader.Peek(ahead + length + 1) == '(';
  if (length < 2 || !returns) return false;
  const QByteArrayView run = reader.Next(ahead + length).sliced(ahead);
  Reader pairs(run, false);
  TakePairs(pairs, length, FromJisPair());
  return JapaneseCost(pairs.Finish().text) <= length * kLetter + kOdd;
}

// An escape sequence of which a byte was lost or changed.
void TakeBrokenEscape(Reader& reader, JisSet& set, bool atCut) {
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
bool GoesOnInNextLine(Reader& reader) {
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
  Reader reader(bytes, atCut);
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
