#include "mail/codec/charset/japanese_decoders.h"

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/charset/code_page_932.h"
#include "mail/codec/charset/pair_runs.h"
#include "mail/codec/charset/realigned_text.h"

namespace vorn {
namespace {
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
bool TakeShiftJisRun(CodeReader& reader, qsizetype length) {
  const CodePage932& page = CodePage932::Instance();
  const bool isCut = reader.IsCutAfter(length);
  const CodeReader::Mark begin = reader.Here();
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

void RealignShiftJisRun(CodeReader& reader, const CodeReader::Mark& begin, QByteArrayView run,
                        bool isCut) {
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
  CodeReader reader(bytes, atCut);
  while (!reader.AtEnd()) {
    const qsizetype length = reader.RunLength(0x40, 0xFF);
    if (length == 0) {
      reader.Put(static_cast<char16_t>(reader.Take()));
      continue;
    }
    const QByteArrayView run = reader.Next(length);
    const bool isCut = reader.IsCutAfter(length);
    const CodeReader::Mark begin = reader.Here();
    if (TakeShiftJisRun(reader, length) && length <= kLongest) {
      RealignShiftJisRun(reader, begin, run, isCut);
    }
  }
  return reader.Finish();
}

DecodedText DecodeEucJp(QByteArrayView bytes, bool atCut) {
  const FromEucPair fromPair;
  CodeReader reader(bytes, atCut);
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

}  // namespace vorn
