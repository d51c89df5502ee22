#include "mail/codec/mime/code_offers.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <set>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/header/header_parameters.h"
#include "mail/codec/mime/content_index.h"
#include "mail/codec/mime/mime_codec.h"

namespace vorn {
namespace {

using MimeCodec::ContentRecord;

constexpr qsizetype kRecordSampleBytes = 16 * 1024;
constexpr qsizetype kPreviewLength = 80;

struct TextPart {
  QByteArray bytes;
  QByteArray label;
};

bool TellsCodesApart(QByteArrayView bytes) {
  return HasJisEscape(bytes) || HasHighBytes(bytes);
}

std::vector<TextPart> TextParts(QByteArrayView source, const QString& contentIndex,
                                const QStringList& textTypes) {
  std::vector<TextPart> parts;
  for (const ContentRecord& record : MimeCodec::ParseContentIndex(contentIndex)) {
    if (record.hasName || record.first > record.last || !textTypes.contains(record.type)) continue;
    const auto encoding = MimeCodec::TransferEncodingOf(record.encoding.toLatin1());
    const qsizetype last = qMin(record.last, record.first + kRecordSampleBytes - 1);
    parts.push_back({MimeCodec::DecodePart(source, encoding, record.first, last),
                     MimeCodec::ContentType(source, record).Bytes("charset")});
  }
  return parts;
}

// The first text that tells codes apart, from the beginning of its first such line.
QByteArray Sample(const std::vector<TextPart>& parts) {
  for (const TextPart& part : parts) {
    if (!TellsCodesApart(part.bytes)) continue;
    qsizetype begin = 0;
    for (qsizetype end = 0; end >= 0; begin = end + 1) {
      end = part.bytes.indexOf('\n', begin);
      const qsizetype length = (end < 0 ? part.bytes.size() : end) - begin;
      if (TellsCodesApart(QByteArrayView(part.bytes).sliced(begin, length))) break;
    }
    return part.bytes.sliced(qMin(begin, part.bytes.size()));
  }
  return parts.empty() ? QByteArray() : parts.front().bytes;
}

// What a text has only when it is read in a wrong code.
bool IsStrange(char32_t c) {
  switch (QChar::category(c)) {
    case QChar::Other_Control:
      return c != '\r' && c != '\n' && c != '\t' && c != '\f' && c != 0x1A;
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
      return true;
    default:
      return c == QChar::ReplacementCharacter;
  }
}

CodeOffer Offer(const QString& name, const Charset& charset, const QByteArray& sample) {
  const DecodedText decoded = Decode(charset, sample, true);
  CodeOffer offer{name, charset, {}, decoded.clean};
  for (const uint c : decoded.text.toUcs4()) offer.isPlausible = offer.isPlausible && !IsStrange(c);
  offer.preview = decoded.text.section(u'\n', 0, 0).trimmed().left(kPreviewLength);
  return offer;
}

bool IsJapanese(QChar::Script script) {
  return script == QChar::Script_Han || script == QChar::Script_Hiragana ||
         script == QChar::Script_Katakana;
}

// How much a text is like one, from -1 to 1: words are of one script, with capitals only where they
// begin, and without signs in them.
double Wordliness(const QString& text) {
  int good = 0;
  int bad = 0;
  char32_t before = ' ';
  QChar::Script script = QChar::Script_Common;
  for (const uint c : text.toUcs4()) {
    const bool isForeign = c >= 0x80 && !QChar::isSpace(c) && !QChar::isPunct(c);
    const QChar::Script own = QChar::script(c);
    const bool isOther =
        script != QChar::Script_Common && own != script && !(IsJapanese(script) && IsJapanese(own));
    const bool isOdd =
        !QChar::isLetter(c) || (QChar::isUpper(c) && QChar::isLetter(before)) || isOther;
    if (isForeign) ++(isOdd ? bad : good);
    if (isForeign && QChar::isLetter(c)) script = own;
    before = c;
  }
  return good + bad == 0 ? 0 : static_cast<double>(good - bad) / (good + bad);
}

bool IsSame(const Charset& a, const Charset& b) {
  return a.family == b.family && a.icuName == b.icuName;
}

// Plausible ones first, of these the one that is recognised, what mail is usually in, then what
// reads best.
double Rank(const CodeOffer& offer, const Charset& recognized) {
  constexpr double kPlausible = 1000;
  constexpr double kRecognized = 500;
  constexpr double kUsual = 20;
  const double reading = LooksJapanese(offer.preview) ? Likelihood(offer.preview) : 0;
  const bool isRecognized =
      recognized.family > Charset::Family::Ascii && IsSame(offer.charset, recognized);
  return (offer.isPlausible ? kPlausible : 0) + (isRecognized ? kRecognized : 0) +
         (offer.isUsual ? kUsual : 0) + reading + 10 * Wordliness(offer.preview);
}

// Empty where MIME knows none.
QString MimeName(const char* icuName) {
  UErrorCode status = U_ZERO_ERROR;
  const char* name = ucnv_getStandardName(icuName, "MIME", &status);
  return U_SUCCESS(status) && name != nullptr ? QString::fromLatin1(name) : QString();
}

QString NameOf(const char* icuName) {
  const QString usual = MimeName(icuName);
  if (!usual.isEmpty()) return usual;
  UErrorCode status = U_ZERO_ERROR;
  const char* name = ucnv_getStandardName(icuName, "IANA", &status);
  return QString::fromLatin1(U_SUCCESS(status) && name != nullptr ? name : icuName);
}

}  // namespace

std::vector<CodeOffer> OfferCodes(QByteArrayView source, const QString& contentIndex,
                                  const QStringList& textTypes) {
  const QByteArray sample = Sample(TextParts(source, contentIndex, textTypes));
  std::vector<CodeOffer> offers;
  std::set<QString> names;
  const auto add = [&](const QString& name, const Charset& charset, bool isUsual) {
    if (!names.insert(name.toLower()).second) return;
    offers.push_back(Offer(name, charset, sample));
    offers.back().isUsual = isUsual;
  };
  // Those with decoders of our own, under their best known names.
  for (const char* name :
       {"ISO-2022-JP", "EUC-JP", "Shift_JIS", "UTF-8", "EUC-JIS-2004", "Shift_JIS-2004"}) {
    add(QString::fromLatin1(name), Charset::FromLabel(name), true);
  }
  for (int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    const char* icuName = ucnv_getAvailableName(i);
    const QString name = NameOf(icuName);
    // Windows' own are what many programs write, and no names of MIME.
    const bool isUsual = !MimeName(icuName).isEmpty() || name.startsWith(u"windows-12");
    add(name, {Charset::Family::Other, icuName}, isUsual);
  }
  const Charset recognized = RecognizeCharset(sample, true);
  std::sort(offers.begin(), offers.end(), [&](const CodeOffer& a, const CodeOffer& b) {
    const double rankA = Rank(a, recognized);
    const double rankB = Rank(b, recognized);
    return rankA != rankB ? rankA > rankB : a.name.compare(b.name, Qt::CaseInsensitive) < 0;
  });
  return offers;
}

QStringList WrongLabels(QByteArrayView source, const QString& contentIndex,
                        const QStringList& textTypes) {
  QStringList labels;
  for (const TextPart& part : TextParts(source, contentIndex, textTypes)) {
    const Charset declared = Charset::FromLabel(part.label);
    const QString label = QString::fromLatin1(part.label);
    const DecodedText asDeclared = Decode(declared, part.bytes, true);
    const bool isRight =
        !TellsCodesApart(part.bytes) ||
        (asDeclared.clean && asDeclared.text == DecodeAutomatically(part.bytes, declared, true));
    if (!isRight && !labels.contains(label)) labels.append(label);
  }
  return labels;
}

}  // namespace vorn
