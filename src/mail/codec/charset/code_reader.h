#pragma once

#include <QByteArrayView>
#include <QString>
#include <algorithm>

#include "mail/codec/charset/japanese_decoders.h"

namespace vorn {

/// What makes a half-width kana of its eight-bit byte.
constexpr char16_t kHalfKanaBase = 0xFF61 - 0xA1;

inline bool InRange(int byte, int first, int last) {
  return byte >= first && byte <= last;
}

/// Where a byte comes next. It is asked again and again while a text is read, so that what was
/// found is kept.
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

/// Reads bytes of a Japanese code one by one and collects the text.
class CodeReader {
 public:
  // No byte gives more than one character, so the text is written into room for all of them.
  CodeReader(QByteArrayView bytes, bool atCut)
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

}  // namespace vorn
