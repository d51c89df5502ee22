#include "mail/charset.h"

#include <QStringDecoder>
#include <algorithm>

#include "mail/charset_recognition.h"
#include "mail/icu_converter.h"
#include "mail/japanese_decoders.h"

namespace vorn {
namespace {

using Family = Charset::Family;

struct Label {
  QByteArrayView name;
  Family family;
};

// Lower-cased and without "-", "_", "." and blanks, so that one entry covers its spellings.
constexpr Label kLabels[] = {
    {"usascii", Family::Ascii},
    {"ascii", Family::Ascii},
    {"ansix341968", Family::Ascii},
    {"iso646us", Family::Ascii},
    {"iso2022jp", Family::Jis},
    {"iso2022jp1", Family::Jis},
    {"iso2022jp2", Family::Jis},
    {"iso2022jp3", Family::Jis},
    {"iso2022jp2004", Family::Jis},
    {"iso2022jpms", Family::Jis},
    {"csiso2022jp", Family::Jis},
    {"jis", Family::Jis},
    {"cp50220", Family::Jis},
    {"cp50221", Family::Jis},
    {"cp50222", Family::Jis},
    {"xiso2022jp", Family::Jis},
    {"eucjp", Family::Euc},
    {"xeucjp", Family::Euc},
    {"eucjpms", Family::Euc},
    {"eucjpwin", Family::Euc},
    {"ujis", Family::Euc},
    {"cp51932", Family::Euc},
    {"cseucpkdfmtjapanese", Family::Euc},
    {"eucjis2004", Family::Euc},
    {"shiftjis", Family::ShiftJis},
    {"sjis", Family::ShiftJis},
    {"xsjis", Family::ShiftJis},
    {"xshiftjis", Family::ShiftJis},
    {"mskanji", Family::ShiftJis},
    {"csshiftjis", Family::ShiftJis},
    {"windows31j", Family::ShiftJis},
    {"cswindows31j", Family::ShiftJis},
    {"cp932", Family::ShiftJis},
    {"ms932", Family::ShiftJis},
    {"windows932", Family::ShiftJis},
    {"shiftjis2004", Family::ShiftJis},
    {"xmscp932", Family::ShiftJis},
    {"sjiswin", Family::ShiftJis},
    {"utf8", Family::Utf8},
    {"unicode11utf8", Family::Utf8},
    {"xutf8", Family::Utf8},
    {"utf8mb4", Family::Utf8},
};

QByteArray Squeeze(QByteArrayView label) {
  QByteArray squeezed;
  for (const char c : label) {
    if (c != '-' && c != '_' && c != '.' && c != ' ' && c != '"' && c != '\'') {
      squeezed += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    }
  }
  return squeezed;
}

// Labels whose wider relative is what mail really holds (WHATWG Encoding Standard, labels).
QByteArray WiderName(const QByteArray& squeezed, QByteArrayView label) {
  if (squeezed == "iso88591" || squeezed == "latin1") return "windows-1252";
  if (squeezed == "iso88599") return "windows-1254";
  if (squeezed == "ksc56011987" || squeezed == "ksc5601" || squeezed == "euckr") {
    return "windows-949";
  }
  if (squeezed == "gb2312" || squeezed == "gbk") return "gb18030";
  if (squeezed == "tis620") return "windows-874";
  return label.toByteArray();
}

bool IsCleanUtf8Prefix(const QString& text) {
  return !text.contains(QChar::ReplacementCharacter);
}

// The length without a multi-byte character that the end cuts off.
qsizetype WholeUtf8Length(QByteArrayView bytes) {
  const qsizetype size = bytes.size();
  for (qsizetype back = 1; back <= 3 && back <= size; ++back) {
    const auto byte = static_cast<unsigned char>(bytes[size - back]);
    if ((byte & 0xC0) == 0x80) continue;
    const qsizetype need = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    return need > back ? size - back : size;
  }
  return size;
}

DecodedText DecodeUtf8(QByteArrayView bytes, bool atCut) {
  if (bytes.startsWith("\xEF\xBB\xBF")) bytes = bytes.sliced(3);
  if (atCut) bytes = bytes.first(WholeUtf8Length(bytes));
  QStringDecoder decoder(QStringConverter::Utf8);
  DecodedText decoded{decoder(bytes), true};
  decoded.clean =
      !decoder.hasError() && (IsCleanUtf8Prefix(decoded.text) || bytes.contains("\xEF\xBF\xBD"));
  return decoded;
}

DecodedText DecodeAscii(QByteArrayView bytes) {
  DecodedText decoded{QString::fromLatin1(bytes), true};
  for (QChar& c : decoded.text) {
    if (c.unicode() >= 0x80) {
      c = QChar::ReplacementCharacter;
      decoded.clean = false;
    }
  }
  return decoded;
}

DecodedText DecodeOther(const QByteArray& icuName, QByteArrayView bytes, bool atCut) {
  IcuConverter converter(icuName.constData());
  if (!converter.IsValid()) return DecodeAscii(bytes);
  QString text = converter.Decode(bytes);
  if (atCut && text.endsWith(QChar::ReplacementCharacter)) text.chop(1);
  if (text.startsWith(QChar::ByteOrderMark)) text.remove(0, 1);
  const bool clean = !text.contains(QChar::ReplacementCharacter);
  return {text, clean};
}

// The sets that ISO-2022-JP-2 (RFC 1554) adds: Chinese, Korean, Latin and Greek.
bool HasForeignEscape(QByteArrayView bytes) {
  // From escape to escape: searching for four texts byte by byte took longer than the decoding.
  for (qsizetype at = bytes.indexOf('\x1B'); at >= 0; at = bytes.indexOf('\x1B', at + 1)) {
    const QByteArrayView rest = bytes.sliced(at + 1);
    for (const QByteArrayView set : {"$A", "$(C", ".A", ".F"}) {
      if (rest.startsWith(set)) return true;
    }
  }
  return false;
}

bool ShiftsByEscapes(const Charset& charset) {
  return charset.family == Family::Jis ||
         (charset.family == Family::Other && charset.icuName.toLower().startsWith("iso-2022"));
}

// Whether a reading without errors is the right one: text in ISO-2022-JP has none in any code.
bool Fits(const Charset& charset, QByteArrayView bytes, const DecodedText& reading) {
  return reading.clean && (ShiftsByEscapes(charset) || !HasJisEscape(bytes));
}

// Codes in which nearly any sequence of bytes has a meaning prove nothing by it.
bool ProvesItself(const Charset& charset) {
  if (charset.family != Family::Other) return charset.family > Family::Ascii;
  return IcuConverter(charset.icuName.constData()).IsMultiByte();
}

// Chinese, Korean or Cyrillic text read in a Japanese code gives characters, but hardly any kana.
bool HasKana(const QString& text) {
  const auto kana = std::count_if(text.begin(), text.end(), [](QChar c) {
    return c.unicode() >= 0x3041 && c.unicode() <= 0x30FA;
  });
  const auto others =
      std::count_if(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x80; });
  return kana * 4 >= others && kana > 0;
}

// Western words have a few letters over ASCII each; Japanese text has little else.
bool IsMostlyEightBit(QByteArrayView bytes) {
  const auto isHigh = [](char c) { return (c & 0x80) != 0; };
  const auto letters = std::count_if(bytes.begin(), bytes.end(), [](char c) { return c != ' '; });
  return std::count_if(bytes.begin(), bytes.end(), isHigh) * 5 >= letters * 3;
}

// The codes that programs declare which know of no other.
bool IsWestern(const Charset& charset) {
  const QByteArray name = charset.icuName.toLower();
  return name == "windows-1252" || name == "iso-8859-1" || name == "iso-8859-15";
}

}  // namespace

CharsetChoice CharsetChoiceOf(const QString& flagCharacter) {
  if (flagCharacter == u"0") return CharsetChoice::Jis;
  if (flagCharacter == u"1") return CharsetChoice::Euc;
  if (flagCharacter == u"2") return CharsetChoice::ShiftJis;
  if (flagCharacter == u"3") return CharsetChoice::Utf8;
  return CharsetChoice::Automatic;
}

Charset Charset::FromLabel(QByteArrayView label) {
  const QByteArray squeezed = Squeeze(label.trimmed());
  if (squeezed.isEmpty()) return {};
  const auto known = std::find_if(std::begin(kLabels), std::end(kLabels), [&](const Label& entry) {
    return entry.name == QByteArrayView(squeezed);
  });
  if (known != std::end(kLabels)) return {known->family, {}};
  const QByteArray name = WiderName(squeezed, label.trimmed());
  return IcuConverter(name.constData()).IsValid() ? Charset{Family::Other, name} : Charset{};
}

Charset Charset::FromChoice(CharsetChoice choice) {
  switch (choice) {
    case CharsetChoice::Jis:
      return {Family::Jis, {}};
    case CharsetChoice::Euc:
      return {Family::Euc, {}};
    case CharsetChoice::ShiftJis:
      return {Family::ShiftJis, {}};
    case CharsetChoice::Utf8:
      return {Family::Utf8, {}};
    default:
      return {};
  }
}

DecodedText Decode(const Charset& charset, QByteArrayView bytes, bool atCut) {
  switch (charset.family) {
    case Family::Jis:
      return HasForeignEscape(bytes) ? DecodeOther("ISO-2022-JP-2", bytes, atCut)
                                     : DecodeIso2022Jp(bytes, atCut);
    case Family::Euc:
      return DecodeEucJp(bytes, atCut);
    case Family::ShiftJis:
      return DecodeShiftJis(bytes, atCut);
    case Family::Utf8:
      return DecodeUtf8(bytes, atCut);
    case Family::Other:
      return DecodeOther(charset.icuName, bytes, atCut);
    default:
      return DecodeAscii(bytes);
  }
}

QString DecodeAutomatically(QByteArrayView bytes, const Charset& declared, bool atCut) {
  DecodedText asDeclared = Decode(declared, bytes, atCut);
  if (Fits(declared, bytes, asDeclared)) return asDeclared.text;
  const Charset recognized = RecognizeCharset(bytes);
  DecodedText asRecognized = Decode(recognized, bytes, atCut);
  if (asRecognized.clean) return asRecognized.text;
  // Damaged either way: the sender's own word counts most.
  const bool declaredCounts =
      declared.family != Family::Unknown && declared.family != Family::Ascii;
  if (declaredCounts) return asDeclared.text;
  return recognized.family != Family::Unknown ? asRecognized.text
                                              : Decode({Family::ShiftJis, {}}, bytes, atCut).text;
}

QString DecodeWithChoice(QByteArrayView bytes, const Charset& declared, const ReadingCode& code,
                         bool atCut) {
  if (code.choice == CharsetChoice::Automatic) return DecodeAutomatically(bytes, declared, atCut);
  const bool isDeclared = declared.family > Family::Ascii;
  const Charset chosen = Charset::FromChoice(code.choice);
  DecodedText asDeclared = isDeclared ? Decode(declared, bytes, atCut) : DecodedText{{}, false};
  const bool declaredFits = Fits(declared, bytes, asDeclared);
  if (declaredFits && ProvesItself(declared)) return asDeclared.text;
  DecodedText asChosen = Decode(chosen, bytes, atCut);
  if (code.isPicked) {
    const bool hasErrors = !Fits(chosen, bytes, asChosen) || !LooksJapanese(asChosen.text);
    return declaredFits && hasErrors ? asDeclared.text : asChosen.text;
  }
  // Hardly anything but UTF-8 is well-formed UTF-8.
  const DecodedText asUtf8 = Decode({Family::Utf8, {}}, bytes, atCut);
  if (asUtf8.clean && LooksJapanese(asUtf8.text)) return asUtf8.text;
  const bool chosenFits = Fits(chosen, bytes, asChosen);
  if (chosenFits && (!declaredFits || LooksJapanese(asChosen.text))) return asChosen.text;
  return DecodeAutomatically(bytes, isDeclared ? declared : chosen, atCut);
}

QString DecodeRawHeader(QByteArrayView bytes, const ReadingCode& code) {
  const QString recognized = DecodeWithChoice(bytes, {}, code);
  if (code.body.family != Family::Other || code.choice != CharsetChoice::Automatic) {
    return recognized;
  }
  const Family family = RecognizeCharset(bytes).family;
  if (family == Family::Ascii || family == Family::Jis || family == Family::Utf8) return recognized;
  const DecodedText asBody = Decode(code.body, bytes);
  const bool isJapanese =
      HasKana(recognized) ||
      (IsWestern(code.body) && !recognized.contains(QChar::ReplacementCharacter) &&
       IsMostlyEightBit(bytes) && LooksJapanese(recognized));
  return asBody.clean && !isJapanese ? asBody.text : recognized;
}

}  // namespace vorn
