#include "mail/codec/charset/charset.h"

#include <QStringDecoder>
#include <algorithm>
#include <climits>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/charset/iconv_decoder.h"
#include "mail/codec/charset/icu_converter.h"
#include "mail/codec/charset/japanese_decoders.h"
#include "mail/codec/charset/reading_cost.h"
#include "mail/codec/charset/short_text.h"
#include "mail/codec/charset/text_runs.h"
#include "mail/codec/charset/western_label.h"

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
    {"iso2022jp32004", Family::Jis},
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
    {"xmscp932", Family::ShiftJis},
    {"sjiswin", Family::ShiftJis},
    {"utf8", Family::Utf8},
    {"unicode11utf8", Family::Utf8},
    {"xutf8", Family::Utf8},
    {"utf8mb4", Family::Utf8},
};

// Codes that ICU has no table of, by the names that `iconv` gives them: JIS X 0213, and Latin-10.
constexpr char kLatin10[] = "ISO-8859-16";
constexpr char kEucX0213[] = "EUC-JISX0213";
constexpr char kShiftJisX0213[] = "SHIFT_JISX0213";

QByteArray NameForIconv(QByteArrayView squeezed) {
  if (squeezed.startsWith('x')) squeezed = squeezed.sliced(1);
  for (const QByteArrayView name : {"iso885916", "latin10"}) {
    if (squeezed == name) return kLatin10;
  }
  for (const QByteArrayView name : {"eucjis2004", "eucjisx0213", "eucjis0213"}) {
    if (squeezed == name) return kEucX0213;
  }
  for (const QByteArrayView name :
       {"shiftjis2004", "shiftjisx0213", "shiftjis0213", "sjis2004", "sjisx0213", "sjis0213"}) {
    if (squeezed == name) return kShiftJisX0213;
  }
  return {};
}

bool IsForIconv(const QByteArray& name) {
  return name == kEucX0213 || name == kShiftJisX0213 || name == kLatin10;
}

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
  for (const QByteArrayView korean : {"ksc56011987", "ksc5601", "ksc56011989", "euckr", "uhc",
                                      "xuhc", "cp949", "xcp949", "949"}) {
    if (squeezed == korean) return "windows-949";
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
  // Stateless, so that a character that the end cuts off is an error.
  QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
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
  QString text;
  if (IsForIconv(icuName)) {
    text = DecodeByIconv(icuName.constData(), bytes);
  } else {
    IcuConverter converter(icuName.constData());
    if (!converter.IsValid()) return DecodeAscii(bytes);
    text = converter.ToUnicode(bytes);
    // What some of its tables have for a character that they lack.
    constexpr char16_t kSubstitute = 0x1A;
    if (!bytes.contains(kSubstitute)) text.replace(kSubstitute, QChar::ReplacementCharacter);
  }
  if (atCut && text.endsWith(QChar::ReplacementCharacter)) text.chop(1);
  if (text.startsWith(QChar::ByteOrderMark)) text.remove(0, 1);
  const bool clean = !text.contains(QChar::ReplacementCharacter);
  return {text, clean};
}

bool ShiftsByEscapes(const Charset& charset) {
  return charset.family == Family::Jis ||
         (charset.family == Family::Other && charset.icuName.toLower().startsWith("iso-2022"));
}

// Hardly anything but UTF-8 is well-formed UTF-8 with Japanese in it, whatever it is declared as.
bool IsUtf8Instead(const Charset& charset, QByteArrayView bytes) {
  const bool mayBe = charset.family == Family::ShiftJis || charset.family == Family::Euc ||
                     (charset.family == Family::Jis && HasHighBytes(bytes));
  return mayBe && bytes.isValidUtf8() && LooksJapanese(QString::fromUtf8(bytes));
}

// What the lead bytes of kana in UTF-8 are in Shift_JIS; words in the other code before or behind
// a text may give no errors there.
bool HoldsUtf8Kana(const Charset& charset, const QString& text) {
  constexpr qsizetype kLookedAt = 4096;
  const auto isLead = [](QChar c) { return c == u'縺' || c == u'繧' || c == u'繝'; };
  const qsizetype length = qMin(text.size(), kLookedAt);
  return charset.family == Family::ShiftJis &&
         (std::any_of(text.begin(), text.begin() + length, isLead) ||
          std::any_of(text.end() - length, text.end(), isLead));
}

// Whether a reading without errors is the right one: text in ISO-2022-JP has none in any code.
bool Fits(const Charset& charset, QByteArrayView bytes, const DecodedText& reading) {
  return reading.clean && (ShiftsByEscapes(charset) || !HasJisEscape(bytes)) &&
         !IsUtf8Instead(charset, bytes) && !HoldsUtf8Kana(charset, reading.text);
}

// Codes in which nearly any sequence of bytes has a meaning prove nothing by it.
bool ProvesItself(const Charset& charset) {
  if (charset.family != Family::Other) return charset.family > Family::Ascii;
  if (charset.icuName == kLatin10) return false;
  return IsForIconv(charset.icuName) || IcuConverter(charset.icuName.constData()).IsMultiByte();
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
  const auto letters = std::count_if(bytes.begin(), bytes.end(), [](char c) { return c != ' '; });
  return std::count_if(bytes.begin(), bytes.end(), IsHighByte) * 5 >= letters * 3;
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
  if (const qsizetype comment = label.indexOf('('); comment >= 0) label = label.first(comment);
  const QByteArray squeezed = Squeeze(label.trimmed());
  if (squeezed.isEmpty()) return {};
  const auto known = std::find_if(std::begin(kLabels), std::end(kLabels), [&](const Label& entry) {
    return entry.name == QByteArrayView(squeezed);
  });
  if (known != std::end(kLabels)) return {known->family, {}};
  if (const QByteArray name = NameForIconv(squeezed); !name.isEmpty()) return {Family::Other, name};
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

namespace {

// A byte that was lost behind an escape makes a foreign set of a Japanese one.
DecodedText DecodeJis(QByteArrayView bytes, bool atCut) {
  if (!HasForeignEscape(bytes)) return DecodeIso2022Jp(bytes, atCut);
  DecodedText foreign = DecodeOther("ISO-2022-JP-2", bytes, atCut);
  if (foreign.clean) return foreign;
  DecodedText usual = DecodeIso2022Jp(bytes, atCut);
  return JapaneseCost(usual.text) < JapaneseCost(foreign.text) ? usual : foreign;
}

}  // namespace

DecodedText Decode(const Charset& charset, QByteArrayView bytes, bool atCut) {
  switch (charset.family) {
    case Family::Jis:
      return DecodeJis(bytes, atCut);
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

namespace {

// What a code's own word is worth against the usualness of a reading.
constexpr double kDeclared = 6;
constexpr double kSureOfJapanese = 7;
constexpr qsizetype kLookedAt = 4096;

// The code in which bytes give the most usual text, errors counted, with the declared code first
// among equals. Enough of them are looked at to tell.
Charset MostUsual(QByteArrayView bytes, const Charset& declared, bool atCut) {
  constexpr qsizetype kEnough = 64 * 1024;
  constexpr int kWord = 30;  // what a code's own word is worth, in halves of a bit
  const QByteArrayView sample = Telling(bytes, kEnough);
  atCut = atCut || sample.end() != bytes.end();
  Charset best = declared;
  int bestCost = INT_MAX;
  const auto consider = [&](const Charset& charset, int bonus) {
    const QString text = Decode(charset, sample, atCut).text;
    const bool isWestern = charset.family == Family::Other;
    const int cost =
        (isWestern ? qMin(WesternCost(text), JapaneseCost(text)) : JapaneseCost(text)) - bonus;
    if (cost >= bestCost) return;
    best = charset;
    bestCost = cost;
  };
  if (declared.family > Family::Ascii) consider(declared, kWord);
  if (HasJisEscape(bytes)) consider({Family::Jis, {}}, 0);
  for (const Family family : {Family::Utf8, Family::ShiftJis, Family::Euc}) {
    consider({family, {}}, 0);
  }
  if (!IsMostlyEightBit(bytes)) consider({Family::Other, "windows-1252"}, 0);
  return best;
}

// The bytes of EUC have a meaning in Shift_JIS, of half-width kana mostly, as those of eight bits
// have in ISO-2022-JP, where nobody writes them. Words of kana are what is declared.
bool IsEucUnderOtherLabel(const Charset& declared, QByteArrayView bytes, const QString& reading) {
  constexpr int kSure = 16;
  const bool isJis = declared.family == Family::Jis;
  if (!isJis && declared.family != Family::ShiftJis) return false;
  if (isJis && HasJisEscape(bytes)) return false;
  const QString begin = reading.left(kLookedAt);
  if (Likelihood(begin) >= 0) return false;
  const DecodedText euc = Decode({Family::Euc, {}}, bytes.first(qMin(bytes.size(), kLookedAt)),
                                 bytes.size() > kLookedAt);
  if (!euc.clean) return false;
  return Likelihood(euc.text) >= kSureOfJapanese ||
         ((isJis || !AreHalfKanaWords(begin)) &&
          JapaneseCost(euc.text) + kSure <= JapaneseCost(begin));
}

QString AsDeclared(const Charset& declared, QByteArrayView bytes, QString reading, bool atCut) {
  return IsEucUnderOtherLabel(declared, bytes, reading)
             ? Decode({Family::Euc, {}}, bytes, atCut).text
             : std::move(reading);
}

}  // namespace

Charset JapaneseUnderWesternLabel(const Charset& declared, QByteArrayView bytes) {
  constexpr int kSure = 6;
  if (declared.family != Family::Other || !IsWestern(declared)) return {};
  const QByteArrayView sample = Telling(bytes, kLookedAt);
  const bool isCut = sample.end() != bytes.end();
  const Charset recognized = RecognizeCharset(sample, isCut);
  if (recognized.family <= Family::Ascii || recognized.family == Family::Other) return {};
  if (recognized.family == Family::Jis) return recognized;
  const DecodedText reading = Decode(recognized, sample, isCut);
  const QString asDeclared = Decode(declared, sample).text;
  const bool isUtf8 =
      recognized.family == Family::Utf8 &&
      (reading.clean || JapaneseCost(reading.text) + kSure <= WesternCost(asDeclared));
  const bool isSure = isUtf8 || IsPlainlyJapanese(reading.text, asDeclared);
  return isSure ? recognized : Charset();
}

namespace {

// Each byte of a damaged character of UTF-8 is an error; up to three of them are shown as one.
QString WithOneMark(const Charset& charset, DecodedText decoded) {
  constexpr qsizetype kMost = 3;
  if (charset.family != Family::Utf8 || decoded.clean) return std::move(decoded.text);
  qsizetype marks = 0;
  decoded.text.removeIf([&marks](QChar c) {
    marks = c == QChar::ReplacementCharacter ? marks + 1 : 0;
    return marks > 0 && marks % kMost != 1;
  });
  return std::move(decoded.text);
}

// A part that is not declared at all says nothing about the labels of others.
Surroundings Around(const ReadingCode& code) {
  const Charset text = Charset::FromChoice(code.choice);
  const bool isDeclared = code.body.family > Family::Ascii && code.body.family < Family::Other;
  return {text, isDeclared && text.family != Family::Unknown && text.family != code.body.family};
}

}  // namespace

QString DecodeAutomatically(QByteArrayView bytes, const Charset& declared, bool atCut) {
  const Charset meant = JapaneseUnderWesternLabel(declared, bytes);
  if (meant.family != Family::Unknown) return DecodeAutomatically(bytes, meant, atCut);
  if (declared.family == Family::Other && IsWestern(declared)) {
    if (const auto runs = ReadInRuns(bytes, atCut)) return *runs;
  }
  if (const Charset code = CodeOfShortText(bytes, declared, atCut);
      code.family != declared.family) {
    return Decode(code, bytes, atCut).text;
  }
  if (declared.family <= Family::Ascii) {
    const Charset recognized = RecognizeCharset(bytes, atCut);
    if (recognized.family > Family::Ascii) {
      DecodedText reading = Decode(recognized, bytes, atCut);
      const bool fits = Fits(recognized, bytes, reading);
      if (const auto runs = fits ? std::nullopt : ReadInRuns(bytes, atCut)) return *runs;
      return WithOneMark(recognized, std::move(reading));
    }
  }
  DecodedText asDeclared = Decode(declared, bytes, atCut);
  if (Fits(declared, bytes, asDeclared)) {
    return AsDeclared(declared, bytes, std::move(asDeclared.text), atCut);
  }
  if (const auto runs = ReadInRuns(bytes, atCut)) return *runs;
  const Charset usual = MostUsual(bytes, declared, atCut);
  const bool isDeclared = usual.family == declared.family && usual.icuName == declared.icuName;
  return WithOneMark(usual, isDeclared ? std::move(asDeclared) : Decode(usual, bytes, atCut));
}

QString DecodeWithChoice(QByteArrayView bytes, const Charset& declared, const ReadingCode& code,
                         bool atCut) {
  if (code.forced) return Decode(*code.forced, bytes, atCut).text;
  if (code.choice == CharsetChoice::Automatic) return DecodeAutomatically(bytes, declared, atCut);
  const Charset chosen = Charset::FromChoice(code.choice);
  if (!code.isPicked) {
    const Charset meant = CodeOfShortText(bytes, declared, atCut);
    if (meant.family != declared.family) return Decode(meant, bytes, atCut).text;
  }
  const bool isDeclared = declared.family > Family::Ascii;
  DecodedText asDeclared = isDeclared ? Decode(declared, bytes, atCut) : DecodedText{{}, false};
  const bool declaredFits = Fits(declared, bytes, asDeclared);
  if (declaredFits && ProvesItself(declared)) {
    return AsDeclared(declared, bytes, std::move(asDeclared.text), atCut);
  }
  DecodedText asChosen = Decode(chosen, bytes, atCut);
  if (code.isPicked) {
    const bool hasErrors = !Fits(chosen, bytes, asChosen) || !LooksJapanese(asChosen.text);
    return declaredFits && hasErrors ? asDeclared.text : asChosen.text;
  }
  // Hardly anything but UTF-8 is well-formed UTF-8.
  const DecodedText asUtf8 = Decode({Family::Utf8, {}}, bytes, atCut);
  if (Fits({Family::Utf8, {}}, bytes, asUtf8) && LooksJapanese(asUtf8.text)) return asUtf8.text;
  const bool chosenFits = Fits(chosen, bytes, asChosen);
  // What was recognised when the message was stored may be a damaged code read as another one.
  const bool isDamaged = isDeclared && !declaredFits &&
                         Likelihood(asDeclared.text) + kDeclared >= Likelihood(asChosen.text);
  const bool counts = declaredFits ? LooksJapanese(asChosen.text) : !isDamaged;
  if (chosenFits && counts) return asChosen.text;
  return DecodeAutomatically(bytes, isDeclared ? declared : chosen, atCut);
}

QString DecodeWord(QByteArrayView bytes, const Charset& declared, const ReadingCode& code) {
  const bool saysWhatTheTextSays =
      code.body.family == declared.family && code.body.icuName == declared.icuName;
  if (code.forced && (saysWhatTheTextSays || code.body.family <= Family::Ascii)) {
    return Decode(*code.forced, bytes).text;
  }
  const Surroundings around = Around(code);
  if (around.code.family == Family::Unknown) return DecodeAutomatically(bytes, declared);
  // The text is Japanese under the same Western label.
  if (saysWhatTheTextSays && IsWestern(declared)) {
    const DecodedText reading = Decode(around.code, bytes);
    if (reading.clean && IsUsualJapanese(reading.text)) return reading.text;
  }
  const Charset meant = CodeOfShortText(bytes, declared, false, around);
  return meant.family == declared.family ? DecodeAutomatically(bytes, declared)
                                         : Decode(meant, bytes).text;
}

QString DecodeRawHeader(QByteArrayView bytes, const ReadingCode& code) {
  const bool isLikeText = code.body.family == Family::ShiftJis || code.body.family == Family::Euc;
  if (isLikeText && !code.forced && code.choice == CharsetChoice::Automatic) {
    return DecodeAutomatically(bytes, code.body);
  }
  const QString recognized = DecodeWithChoice(bytes, {}, code);
  if (code.forced || code.body.family != Family::Other || code.choice != CharsetChoice::Automatic) {
    return recognized;
  }
  if (IsWestern(code.body)) {
    const Charset japanese = JapaneseUnderWesternLabel(code.body, bytes);
    return japanese.family == Family::Unknown ? Decode(code.body, bytes).text : recognized;
  }
  const Family family = RecognizeCharset(bytes).family;
  if (family == Family::Ascii || family == Family::Jis || family == Family::Utf8) return recognized;
  const DecodedText asBody = Decode(code.body, bytes);
  return asBody.clean && !HasKana(recognized) ? asBody.text : recognized;
}

}  // namespace vorn
