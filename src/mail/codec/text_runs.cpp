#include "mail/codec/text_runs.h"

#include <algorithm>

#include "mail/codec/charset.h"
#include "mail/codec/charset_recognition.h"
#include "mail/codec/reading_cost.h"

namespace vorn {
namespace {

using Family = Charset::Family;

bool HasHighBytes(QByteArrayView bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
}

bool HoldsIn(Family family, QByteArrayView line) {
  if (family == Family::Utf8) return !HasJisEscape(line) && line.isValidUtf8();
  return !HasHighBytes(line) && (!HasJisEscape(line) || Decode({Family::Jis, {}}, line).clean);
}

qsizetype LineEnd(QByteArrayView bytes, qsizetype from) {
  const qsizetype lineFeed = bytes.indexOf('\n', from);
  return lineFeed < 0 ? bytes.size() : lineFeed + 1;
}

// The length of the first lines, as many as hold in a code.
qsizetype HeldFirst(Family family, QByteArrayView bytes) {
  qsizetype held = 0;
  while (held < bytes.size()) {
    const qsizetype end = LineEnd(bytes, held);
    if (!HoldsIn(family, bytes.sliced(held, end - held))) break;
    held = end;
  }
  return held;
}

// Where the last lines begin, as many as hold in a code.
qsizetype HeldLast(Family family, QByteArrayView bytes) {
  qsizetype begin = bytes.size();
  while (begin > 0) {
    const qsizetype before = begin > 1 ? bytes.first(begin - 1).lastIndexOf('\n') + 1 : 0;
    if (!HoldsIn(family, bytes.sliced(before, begin - before))) break;
    begin = before;
  }
  return begin;
}

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

}  // namespace

std::optional<QString> ReadInTwoRuns(QByteArrayView bytes, bool atCut) {
  if (!HasHighBytes(bytes) || LineEnd(bytes, 0) == bytes.size()) return {};
  const auto readAt = [&](qsizetype cut) -> std::optional<QString> {
    if (cut <= 0 || cut >= bytes.size()) return {};
    const auto first = ReadRun(bytes.first(cut), false);
    const auto last = first ? ReadRun(bytes.sliced(cut), atCut) : std::nullopt;
    return last ? std::optional(*first + *last) : std::nullopt;
  };
  for (const Family family : {Family::Jis, Family::Utf8}) {
    if (auto text = readAt(HeldFirst(family, bytes))) return text;
    if (auto text = readAt(HeldLast(family, bytes))) return text;
  }
  return {};
}

}  // namespace vorn
