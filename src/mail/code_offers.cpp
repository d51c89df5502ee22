#include "mail/code_offers.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <set>

#include "mail/charset_recognition.h"
#include "mail/content_index.h"
#include "mail/header_parameters.h"
#include "mail/mime_codec.h"

namespace vorn {
namespace {

using MimeCodec::ContentRecord;

constexpr qsizetype kSampleBytes = 16 * 1024;
constexpr qsizetype kPreviewLength = 80;

struct TextPart {
  QByteArray bytes;
  QByteArray label;
};

bool TellsCodesApart(QByteArrayView bytes) {
  return HasJisEscape(bytes) ||
         std::any_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
}

std::vector<TextPart> TextParts(QByteArrayView source, const QString& contentIndex,
                                const QStringList& textTypes) {
  std::vector<TextPart> parts;
  for (const ContentRecord& record : MimeCodec::ParseContentIndex(contentIndex)) {
    if (record.hasName || record.first > record.last || !textTypes.contains(record.type)) continue;
    const auto encoding = MimeCodec::TransferEncodingOf(record.encoding.toLatin1());
    const qsizetype last = qMin(record.last, record.first + kSampleBytes - 1);
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
bool IsStrange(QChar c) {
  const bool isControl = c.category() == QChar::Other_Control && c != u'\r' && c != u'\n' &&
                         c != u'\t' && c != u'\f' && c != u'\x1A';
  return isControl || c == QChar::ReplacementCharacter || c.category() == QChar::Other_PrivateUse ||
         c.category() == QChar::Other_NotAssigned;
}

CodeOffer Offer(const QString& name, const Charset& charset, const QByteArray& sample) {
  const DecodedText decoded = Decode(charset, sample, true);
  CodeOffer offer{name, charset, {}, decoded.clean};
  for (const QChar c : decoded.text) offer.isPlausible = offer.isPlausible && !IsStrange(c);
  offer.preview = decoded.text.section(u'\n', 0, 0).trimmed().left(kPreviewLength);
  return offer;
}

QString NameOf(const char* icuName) {
  for (const char* standard : {"MIME", "IANA"}) {
    UErrorCode status = U_ZERO_ERROR;
    const char* name = ucnv_getStandardName(icuName, standard, &status);
    if (U_SUCCESS(status) && name != nullptr) return QString::fromLatin1(name);
  }
  return QString::fromLatin1(icuName);
}

}  // namespace

std::vector<CodeOffer> OfferCodes(QByteArrayView source, const QString& contentIndex,
                                  const QStringList& textTypes) {
  const QByteArray sample = Sample(TextParts(source, contentIndex, textTypes));
  std::vector<CodeOffer> offers;
  std::set<QString> names;
  const auto add = [&](const QString& name, const Charset& charset) {
    if (names.insert(name.toLower()).second) offers.push_back(Offer(name, charset, sample));
  };
  // Those with decoders of our own, under their best known names.
  for (const char* name :
       {"ISO-2022-JP", "EUC-JP", "Shift_JIS", "UTF-8", "EUC-JIS-2004", "Shift_JIS-2004"}) {
    add(QString::fromLatin1(name), Charset::FromLabel(name));
  }
  for (int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    const char* icuName = ucnv_getAvailableName(i);
    add(NameOf(icuName), {Charset::Family::Other, icuName});
  }
  const auto rank = [](const CodeOffer& offer) {
    return offer.isPlausible ? Likelihood(offer.preview) : -100.0;
  };
  std::stable_sort(offers.begin(), offers.end(), [&rank](const CodeOffer& a, const CodeOffer& b) {
    const double rankA = rank(a);
    const double rankB = rank(b);
    return rankA != rankB ? rankA > rankB : a.name.compare(b.name, Qt::CaseInsensitive) < 0;
  });
  return offers;
}

QStringList WrongLabels(QByteArrayView source, const QString& contentIndex,
                        const QStringList& textTypes) {
  QStringList labels;
  for (const TextPart& part : TextParts(source, contentIndex, textTypes)) {
    const Charset declared = Charset::FromLabel(part.label);
    const bool isShifted = declared.family != Charset::Family::Jis && HasJisEscape(part.bytes);
    const QString label = QString::fromLatin1(part.label);
    const bool isRight =
        !TellsCodesApart(part.bytes) || (!isShifted && Decode(declared, part.bytes, true).clean);
    if (!isRight && !labels.contains(label)) labels.append(label);
  }
  return labels;
}

}  // namespace vorn
