#include "mail/codec/mime/message_code.h"

#include <algorithm>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/header/header_fields.h"
#include "mail/codec/header/transfer_encoding.h"

namespace vorn {
namespace {

using MimeCodec::ContentRecord;

constexpr qsizetype kRecognitionBytes = 64 * 1024;

// What is read of a part; its last character may be cut off.
QByteArray Sample(QByteArrayView source, const ContentRecord& record) {
  const auto encoding = MimeCodec::TransferEncodingOf(record.encoding.toLatin1());
  const qsizetype last = qMin(record.last, record.first + kRecognitionBytes - 1);
  return MimeCodec::DecodePart(source, encoding, record.first, last);
}

int PartCode(const QByteArray& bytes, const Charset& declared) {
  const bool isDeclared = declared.family > Charset::Family::Ascii;
  if (!HasJisEscape(bytes) && !HasHighBytes(bytes)) return -1;
  if (const Charset japanese = JapaneseUnderWesternLabel(declared, bytes);
      japanese.family != Charset::Family::Unknown) {
    return CodeNumber(japanese);
  }
  const bool isShifted = declared.family != Charset::Family::Jis && HasJisEscape(bytes);
  if (isDeclared && !isShifted && Decode(declared, bytes, true).clean) return CodeNumber(declared);
  return CodeNumber(RecognizeCharset(bytes));
}

// Whether the code gives the same as reading the bytes for themselves.
bool ReadsAlike(int code, QByteArrayView bytes, const Charset& declared) {
  const Charset charset = Charset::FromChoice(static_cast<CharsetChoice>(code));
  const DecodedText reading = Decode(charset, bytes, true);
  return reading.clean && reading.text == DecodeAutomatically(bytes, declared, true);
}

bool IsRaw(QByteArrayView text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return (c & 0x80) != 0 || c == '\x1B'; });
}

// Raw words of a header are in the code of the text unless they show that they are not.
bool HeadersReadAlike(int code, QByteArrayView source) {
  if (!IsRaw(source.first(MimeCodec::HeaderBlockEnd(source)))) return true;
  const QByteArrayList fields = MimeCodec::AllHeaders(source);
  const Charset text = Charset::FromChoice(static_cast<CharsetChoice>(code));
  return std::all_of(fields.begin(), fields.end(), [&](const QByteArray& field) {
    return !IsRaw(field) || ReadsAlike(code, field, text);
  });
}

}  // namespace

int RecognizeCode(QByteArrayView source, const std::vector<ContentRecord>& records,
                  const QStringList& textTypes) {
  std::vector<const ContentRecord*> texts;
  for (const ContentRecord& record : records) {
    if (textTypes.contains(record.type)) texts.push_back(&record);
  }
  if (texts.empty() || texts.back()->hasName) return -1;
  const auto declared = [source](const ContentRecord& record) {
    return MimeCodec::DeclaredCharset(source, record);
  };
  const ContentRecord& decisive = *texts.back();
  const int code = PartCode(Sample(source, decisive), declared(decisive));
  texts.pop_back();
  const bool alike =
      code >= 0 && HeadersReadAlike(code, source) &&
      std::all_of(texts.begin(), texts.end(), [&](const ContentRecord* record) {
        return record->hasName || ReadsAlike(code, Sample(source, *record), declared(*record));
      });
  return alike ? code : -1;
}

CharsetChoice StoredCharset(const FlagString& flags) {
  return CharsetChoiceOf(flags.At(kFlagCode, QStringLiteral("0")));
}

CharsetChoice WrittenCharset(QByteArrayView source, const QString& contentIndex,
                             CharsetChoice stored) {
  if (stored != CharsetChoice::Automatic) return stored;
  const auto records = MimeCodec::ParseContentIndex(contentIndex);
  if (records.empty()) return stored;
  // JIS is what is written without a choice as well.
  switch (MimeCodec::DeclaredCharset(source, records.front()).family) {
    case Charset::Family::Utf8:
      return CharsetChoice::Utf8;
    case Charset::Family::ShiftJis:
      return CharsetChoice::ShiftJis;
    case Charset::Family::Euc:
      return CharsetChoice::Euc;
    default:
      return stored;
  }
}

}  // namespace vorn
