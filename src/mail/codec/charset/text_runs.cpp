#include "mail/codec/charset/text_runs.h"

#include <algorithm>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/charset.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/charset/reading_cost.h"

namespace vorn {
namespace {

using Family = Charset::Family;

// A run in whichever code it is surely in.
std::optional<QString> ReadRun(QByteArrayView run, bool atCut) {
  const Charset charset = RecognizeCharset(run, atCut);
  if (charset.family <= Family::Ascii || charset.family == Family::Other) return {};
  DecodedText reading = Decode(charset, run, atCut);
  const bool isProven = charset.family == Family::Utf8  ? !HasJisEscape(run)
                        : charset.family == Family::Jis ? !HasHighBytes(run)
                                                        : IsSurelyJapanese(reading.text);
  if (!reading.clean || !isProven) return {};
  return std::move(reading.text);
}

// The end of what an escape begins: behind the one that returns to ASCII.
qsizetype EndOfShifted(QByteArrayView bytes, qsizetype escape) {
  constexpr qsizetype kSequence = 3;
  for (qsizetype at = escape; at >= 0; at = bytes.indexOf('\x1B', at + 1)) {
    const QByteArrayView next = bytes.sliced(at, qMin(kSequence, bytes.size() - at));
    if (next == "\x1B(B" || next == "\x1B(J") return at + kSequence;
  }
  return bytes.size();
}

// Calls `use` with each piece, and whether it is shifted by escapes, until it says no.
template <typename Use>
bool ForEachPiece(QByteArrayView bytes, Use use) {
  for (qsizetype at = 0; at < bytes.size();) {
    const qsizetype found = bytes.indexOf('\x1B', at);
    const qsizetype escape = found < 0 ? bytes.size() : found;
    if (escape > at && !use(bytes.sliced(at, escape - at), false)) return false;
    if (escape == bytes.size()) break;
    at = EndOfShifted(bytes, escape);
    if (!use(bytes.sliced(escape, at - escape), true)) return false;
  }
  return true;
}

// ISO-2022-JP proves itself by its escapes; what is outside of them may be in one other code.
std::optional<QString> ReadBesideJis(QByteArrayView bytes, bool atCut) {
  if (!HasJisEscape(bytes)) return {};
  QByteArray outside;
  const bool isJis = ForEachPiece(bytes, [&](QByteArrayView piece, bool isShifted) {
    if (!isShifted) outside += piece;
    return !isShifted || !HasHighBytes(piece);
  });
  if (!isJis || !ReadRun(outside, atCut)) return {};
  const Charset other = RecognizeCharset(outside, atCut);
  QString text;
  const bool isWhole = ForEachPiece(bytes, [&](QByteArrayView piece, bool isShifted) {
    const bool isCut = atCut && piece.end() == bytes.end();
    const DecodedText reading = Decode(isShifted ? Charset{Family::Jis, {}} : other, piece, isCut);
    text += reading.text;
    return reading.clean;
  });
  return isWhole ? std::optional(std::move(text)) : std::nullopt;
}

// Where the bytes that are not UTF-8 lie, cut beside ASCII bytes.
class ForeignPlace {
 public:
  ForeignPlace(QByteArrayView bytes, bool atCut) {
    const auto isHigh = [](char c) { return (c & 0x80) != 0; };
    for (auto at = std::find_if(bytes.begin(), bytes.end(), isHigh); at != bytes.end();) {
      const auto end = std::find_if_not(at, bytes.end(), isHigh);
      const auto next = std::find_if(end, bytes.end(), isHigh);
      const QByteArrayView run(at, end);
      const bool isUtf8 = atCut && end == bytes.end() ? Decode({Family::Utf8, {}}, run, true).clean
                                                      : run.isValidUtf8();
      Add(at - bytes.begin(), next - bytes.begin(), isUtf8 ? KindOf(run) : Kind::Foreign);
      at = next;
    }
  }

  // Whether there is Japanese in UTF-8 beside it.
  bool IsBesideUtf8() const { return begin_ >= 0 && (hasUtf8Before_ || lastUtf8_ >= end_); }
  qsizetype Begin() const { return begin_; }
  qsizetype End() const { return end_; }

 private:
  // Two bytes that may be a letter of UTF-8 may also be a character of the code beside them; those
  // of Western letters and signs are taken for what they are.
  enum class Kind { Foreign, Doubtful, Letters, Japanese };
  static Kind KindOf(QByteArrayView run) {
    Kind kind = Kind::Letters;
    for (const char c : run) {
      const auto byte = static_cast<unsigned char>(c);
      if (byte >= 0xE0) return Kind::Japanese;
      if (byte >= 0xC4) kind = Kind::Doubtful;
    }
    return kind;
  }

  void Add(qsizetype at, qsizetype next, Kind kind) {
    if (kind == Kind::Foreign || (kind == Kind::Doubtful && goesOn_)) {
      if (begin_ < 0) begin_ = doubtful_ >= 0 ? doubtful_ : at;
      end_ = next;
    }
    goesOn_ = kind == Kind::Foreign || (kind == Kind::Doubtful && goesOn_);
    if (kind != Kind::Doubtful) {
      doubtful_ = -1;
    } else if (doubtful_ < 0) {
      doubtful_ = at;
    }
    if (kind != Kind::Japanese) return;
    hasUtf8Before_ = hasUtf8Before_ || begin_ < 0;
    lastUtf8_ = at;
  }

  qsizetype begin_ = -1;
  qsizetype end_ = 0;
  qsizetype doubtful_ = -1;
  bool goesOn_ = false;
  bool hasUtf8Before_ = false;
  qsizetype lastUtf8_ = -1;
};

std::optional<QString> ReadBesideUtf8(QByteArrayView bytes, bool atCut) {
  const ForeignPlace foreign(bytes, atCut);
  if (!foreign.IsBesideUtf8()) return {};
  const QByteArrayView last = bytes.sliced(foreign.End());
  const auto between =
      ReadRun(bytes.first(foreign.End()).sliced(foreign.Begin()), atCut && last.isEmpty());
  if (!between) return {};
  return Decode({Family::Utf8, {}}, bytes.first(foreign.Begin())).text + *between +
         Decode({Family::Utf8, {}}, last, atCut).text;
}

}  // namespace

std::optional<QString> ReadInRuns(QByteArrayView bytes, bool atCut) {
  if (!HasHighBytes(bytes)) return {};
  auto text = ReadBesideJis(bytes, atCut);
  return text ? text : ReadBesideUtf8(bytes, atCut);
}

}  // namespace vorn
