#include "mail/codec/mime/text_extraction.h"

#include <QHash>
#include <algorithm>

#include "mail/codec/calendar/calendar_summary.h"
#include "mail/codec/charset/code_page_932.h"
#include "mail/codec/header/header_fields.h"
#include "mail/codec/html/html_text.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/tnef.h"
#include "mail/codec/text/enriched_text.h"
#include "mail/codec/text/flowed_text.h"
#include "mail/codec/text/report_summary.h"

namespace vorn {
namespace {

using MimeCodec::ContentRecord;
using MimeCodec::TransferEncoding;

bool IsBreak(QChar c) {
  return c == u'\r' || c == u'\n';
}

// Whether every line ends with CR LF.
bool HasUsualLineEnds(QStringView text) {
  const QStringView usual = u"\r\n";
  auto at = std::find_if(text.begin(), text.end(), IsBreak);
  while (at != text.end() && QStringView(at, text.end()).startsWith(usual)) {
    at = std::find_if(at + usual.size(), text.end(), IsBreak);
  }
  return at == text.end();
}

// Each of CR LF, CR and LF is one line break, and CR CR LF, which a CR LF becomes that was taken
// for an LF. Most texts are returned as they are, without a copy.
QString WithLineBreaks(const QString& text, const QString& lineBreak) {
  if (lineBreak == u"\r\n" && HasUsualLineEnds(text)) return text;
  QString result;
  result.reserve(text.size() + text.size() / 16);
  for (auto at = text.begin(); at != text.end();) {
    const auto lineEnd = std::find_if(at, text.end(), IsBreak);
    result += QStringView(at, lineEnd);
    if (lineEnd == text.end()) break;
    result += lineBreak;
    const QStringView rest(lineEnd, text.end());
    at = lineEnd + (rest.startsWith(u"\r\r\n") ? 3 : rest.startsWith(u"\r\n") ? 2 : 1);
  }
  return result;
}

// The number of a part's bytes that can give `room` bytes of text.
qsizetype EncodedRoom(qsizetype room, TransferEncoding encoding) {
  return encoding == TransferEncoding::None ? room : room / 3 * 4;
}

// What the page itself declares, as a `meta` element of its first bytes does.
Charset CharsetOfHtml(QByteArrayView page) {
  constexpr qsizetype kDeclaredWithin = 1024;  // HTML Standard, "determining the encoding"
  const QByteArray begin = page.first(qMin(page.size(), kDeclaredWithin)).toByteArray().toLower();
  const qsizetype key = begin.indexOf("charset");
  qsizetype at = key + 7;
  const auto skip = [&](QByteArrayView characters) {
    while (at < begin.size() && characters.contains(begin[at])) ++at;
  };
  skip(" \t\r\n");
  if (key < 0 || at >= begin.size() || begin[at] != '=') return {};
  skip(" \t\r\n='\"");
  qsizetype end = at;
  while (end < begin.size() && !QByteArrayView(" \t\r\n'\"/;>").contains(begin[end])) ++end;
  return Charset::FromLabel(QByteArrayView(begin).sliced(at, end - at));
}

QString DecodeText(QByteArrayView source, const ContentRecord& record, qsizetype last,
                   const ReadingCode& charset, bool cut) {
  const TransferEncoding encoding = MimeCodec::TransferEncodingOf(record.encoding.toLatin1());
  // Where there is nothing to unwrap the bytes are those of the source.
  const QByteArrayView wrapped = MimeCodec::PartOf(source, record.first, last);
  const QByteArray bytes = encoding == TransferEncoding::None
                               ? QByteArray::fromRawData(wrapped.data(), wrapped.size())
                               : MimeCodec::DecodeTransfer(wrapped, encoding);
  Charset declared = MimeCodec::DeclaredCharset(source, record);
  if (declared.family == Charset::Family::Unknown && record.type == u"text/html") {
    declared = CharsetOfHtml(bytes);
  }
  const QString text = DecodeWithChoice(bytes, declared, charset, cut);
  if (encoding != TransferEncoding::Base64 || cut) return text;
  const QByteArrayView part = source.sliced(record.first, last - record.first + 1);
  const qsizetype end = MimeCodec::Base64End(part);
  if (end == 0 || end == part.size()) return text;
  // What a mailing list put behind it.
  const QString lineBreak = text.endsWith(u'\n') ? QString() : QStringLiteral("\r\n");
  return text + lineBreak + DecodeWithChoice(part.sliced(end), {}, charset, cut);
}

// What a part shows: paragraphs of flowed text joined, HTML as text.
QString ReadableText(QByteArrayView source, const ContentRecord& record, const QString& text) {
  if (record.type == u"text/html") return HtmlToText(text);
  if (record.type == u"text/enriched" || record.type == u"text/richtext") {
    return EnrichedToText(text);
  }
  if (record.type != u"text/plain") return text;
  const MimeCodec::HeaderParameters type = MimeCodec::ContentType(source, record);
  if (type.Bytes("format").compare("flowed", Qt::CaseInsensitive) != 0) return text;
  return UnflowText(text, type.Bytes("delsp").compare("yes", Qt::CaseInsensitive) == 0);
}

bool IsHtml(const ContentRecord& record) {
  return record.type == u"text/html" && !record.hasName && record.first <= record.last;
}

bool HasHtml(const std::vector<ContentRecord>& records) {
  return std::any_of(records.begin(), records.end(), IsHtml);
}

// The HTML of a message, one form of each alternative. Where files stand within a text, it comes in
// several parts.
std::vector<const ContentRecord*> ShownHtml(const std::vector<ContentRecord>& records) {
  std::vector<const ContentRecord*> shown;
  QHash<int, int> forms;  // the one that is taken of each alternative
  for (const ContentRecord& record : records) {
    if (!IsHtml(record)) continue;
    if (record.IsAlternative() && forms.value(record.alternative, record.form) != record.form) {
      continue;
    }
    forms.insert(record.alternative, record.form);
    shown.push_back(&record);
  }
  return shown;
}

QString Html(QByteArrayView source, const std::vector<ContentRecord>& records,
             const ReadingCode& charset) {
  QString html;
  for (const ContentRecord* part : ShownHtml(records)) {
    if (!html.isEmpty()) html += QStringLiteral("\r\n<hr>\r\n");
    html += DecodeText(source, *part, part->last, charset, false);
  }
  return html;
}

// Text that is none of the types that are shown as text, but all that a message says.
QString OtherText(QByteArrayView source, const std::vector<ContentRecord>& records,
                  const ReadingCode& charset) {
  for (const ContentRecord& record : records) {
    // These are shown in another way, or are no words.
    const bool isElse = record.type == u"text/html" || record.type == u"text/calendar" ||
                        record.type == u"text/rtf" || record.type == u"text/rfc822-headers";
    // A piece of a message that was sent in several (RFC 2046 section 5.2.2).
    const bool isPiece = record.type == u"message/partial";
    const bool isText = (record.type.startsWith(u"text/") && !isElse) || isPiece;
    if (!isText || record.hasName || record.first > record.last) continue;
    const QString text = DecodeText(source, record, record.last, charset, false);
    if (!QStringView(text).trimmed().isEmpty()) return ReadableText(source, record, text);
  }
  return {};
}

// What stands before the first part, unless it only tells readers without MIME what they see.
QString Preamble(QByteArrayView source, const std::vector<ContentRecord>& records,
                 const ReadingCode& charset) {
  const qsizetype start = MimeCodec::HeaderBlockEnd(source);
  if (records.empty() || records.front().headerFirst <= start) return {};
  const QByteArrayView before = source.sliced(start, records.front().headerFirst - start);
  const qsizetype delimiter = before.startsWith("--") ? 0 : before.indexOf("\n--") + 1;
  const QString text = DecodeWithChoice(before.first(delimiter), {}, charset);
  const bool isForProgram = text.contains(QStringLiteral("MIME"), Qt::CaseInsensitive) ||
                            text.contains(QStringLiteral("multi-part"), Qt::CaseInsensitive);
  return isForProgram || QStringView(text).trimmed().isEmpty() ? QString() : text;
}

// Some programs label the file as one that says nothing.
bool IsCalendar(const ContentRecord& record) {
  const bool isVague = record.type == u"application/octet-stream";
  return record.type == u"text/calendar" || record.type == u"application/ics" ||
         (isVague && record.name.endsWith(u".ics", Qt::CaseInsensitive));
}

// The calendars of a message one behind the other, each of them once: many come again as a file,
// which asks for no answer. What cannot be read stands in the way of none.
QString Calendars(QByteArrayView source, const std::vector<ContentRecord>& records,
                  const ReadingCode& charset) {
  constexpr qsizetype kMost = 20;
  constexpr qsizetype kLongest = 2 * 1024 * 1024;
  QStringList calendars;
  QStringList said;
  qsizetype length = 0;
  QString broken;
  for (const ContentRecord& record : records) {
    if (!IsCalendar(record) || record.first > record.last) continue;
    if (calendars.size() == kMost || length > kLongest) break;
    const QString calendar = DecodeText(source, record, record.last, charset, false);
    const QString summary = CalendarSummary(calendar, true);
    const QString appointment = summary.section(QStringLiteral("\r\n"), 1);
    if (summary.isEmpty() && broken.isEmpty()) broken = calendar;
    if (summary.isEmpty() || said.contains(appointment)) continue;
    said.append(appointment);
    length += calendar.size();
    calendars.append(calendar.endsWith(u'\n') ? calendar : calendar + QStringLiteral("\r\n"));
  }
  return calendars.isEmpty() ? broken : calendars.join(QString());
}

// What the reports and the appointments in the message say, behind its text, or the text of a
// package in the place of one.
QString Reports(QByteArrayView source, const std::vector<ContentRecord>& records,
                const ReadingCode& charset, bool isBlank) {
  const QString calendars = Calendars(source, records, charset);
  QString text = CalendarSummary(calendars, isBlank);
  if (isBlank && text.isEmpty()) text = calendars;  // which nobody can read in another way
  for (const ContentRecord& record : records) {
    if (record.first > record.last) continue;
    const bool isPackage = isBlank && text.isEmpty() && IsTnef(record.type, record.name);
    if (!IsReport(record.type) && !isPackage) continue;
    const TransferEncoding encoding = MimeCodec::TransferEncodingOf(record.encoding.toLatin1());
    const QByteArray bytes = MimeCodec::DecodePart(source, encoding, record.first, record.last);
    text += isPackage ? ReadTnef(bytes).text : ReportSummary(record.type, bytes);
  }
  return text;
}

QString InnerText(QByteArrayView source, const std::vector<ContentRecord>& records,
                  TextRequest request);

// The longest prefix within a number of bytes of code page 932, with "..." when something is cut.
QString Shortened(const QString& text, qsizetype maximum) {
  if (maximum <= 0 || CodePage932Length(text) <= maximum) return text;
  qsizetype length = qMin(text.size(), maximum);
  while (length > 0 && CodePage932Length(QStringView(text).first(length)) > maximum) --length;
  return text.left(length) + QStringLiteral("...");
}

bool IsBlank(const QString& text) {
  return QStringView(text).trimmed().isEmpty();
}

// What a message shows whose text is blank; empty when that is as blank.
QString InPlaceOfText(QByteArrayView source, const std::vector<ContentRecord>& records,
                      const TextRequest& request, const QString& lineBreak) {
  const QString page = Html(source, records, request.charset);
  const QString text = page.isEmpty() ? page : HtmlToText(page);
  if (!IsBlank(text)) return WithLineBreaks(text, lineBreak);
  const QString other = OtherText(source, records, request.charset);
  if (!IsBlank(other)) return WithLineBreaks(other, lineBreak);
  const QString inner = request.isWhole ? QString() : InnerText(source, records, request);
  if (!IsBlank(inner) || request.isInner) return inner;
  return WithLineBreaks(Preamble(source, records, request.charset), lineBreak);
}

// Gathers the texts of a message in their order.
class TextGatherer {
 public:
  TextGatherer(QByteArrayView source, const std::vector<ContentRecord>& records,
               const TextRequest& request)
      : source_(source),
        records_(records),
        request_(request),
        lineBreak_(QStringLiteral("\r\n") + request.linePrefix) {}

  void Run() {
    for (const ContentRecord& record : records_) {
      if (!record.IsAlternative()) hasForm_ = false;
      const bool isText = IsText(record);
      if (!isText && !IsHtmlOfItsOwn(record)) continue;
      Take(record, isText);
      if (request_.maximum > 0 && length_ > request_.maximum) break;
    }
    if (isTruncated_) text_ += kMore;
  }

  const QString& Text() const { return text_; }
  bool HasWords() const { return hasWords_; }
  bool IsTruncated() const { return isTruncated_; }

 private:
  inline static const QString kMore = QStringLiteral("...");

  bool IsText(const ContentRecord& record) const {
    return !record.hasName && record.first <= record.last &&
           request_.textTypes.contains(record.type);
  }

  // Which is no other form of a text that has words, before it or behind it.
  bool IsHtmlOfItsOwn(const ContentRecord& record) const {
    if (!request_.withHtml || !IsHtml(record)) return false;
    if (!record.IsAlternative() || request_.isWhole) return true;
    if (hasForm_) return false;
    const ContentRecord* form = &record;
    while (++form != records_.data() + records_.size() && form->IsAlternative()) {
      if (IsText(*form) && !IsBlank(Read(*form, form->last, false))) return false;
    }
    return true;
  }

  QString Read(const ContentRecord& record, qsizetype last, bool cut) const {
    return ReadableText(source_, record, DecodeText(source_, record, last, request_.charset, cut));
  }

  void Take(const ContentRecord& record, bool isText) {
    qsizetype last = record.last;
    bool cut = false;
    if (request_.maximum > 0 && isText) {
      const TransferEncoding encoding = MimeCodec::TransferEncodingOf(record.encoding.toLatin1());
      const qsizetype room = EncodedRoom(qMax<qsizetype>(request_.maximum - length_, 0), encoding);
      cut = record.Size() > room;
      if (cut) last = record.first + room - 1;
      isTruncated_ = isTruncated_ || cut;
    }
    const QString text = Read(record, last, cut);
    const bool isBlank = IsBlank(text);
    if (!isText && isBlank) return;
    if (!isText && !hasWords_) text_.clear();  // which is blank
    hasForm_ = hasForm_ || (record.IsAlternative() && !isBlank);
    hasWords_ = hasWords_ || !isBlank;
    // A part may end right before its boundary, and one that was cut ends anywhere.
    if (!text_.isEmpty() && !text_.endsWith(lineBreak_)) text_ += lineBreak_;
    text_ += WithLineBreaks(text, lineBreak_);
    if (request_.maximum <= 0) return;
    length_ = CodePage932Length(text_);
    if (isText || length_ <= request_.maximum) return;
    // Its source has no place to cut it at.
    text_ = Shortened(text_, request_.maximum).chopped(kMore.size());
    isTruncated_ = true;
  }

  QByteArrayView source_;
  const std::vector<ContentRecord>& records_;
  const TextRequest& request_;
  QString lineBreak_;
  QString text_;
  qsizetype length_ = 0;  // of the text so far, in bytes of code page 932
  bool isTruncated_ = false;
  bool hasWords_ = false;
  bool hasForm_ = false;  // whether a form of what has several was taken
};

}  // namespace

bool IsTextOfHtml(QByteArrayView source, const QString& contentIndex, const TextRequest& request) {
  const std::vector<ContentRecord> records = MimeCodec::ParseContentIndex(contentIndex);
  if (!HasHtml(records)) return false;
  TextRequest texts = request;
  texts.withHtml = false;
  TextGatherer gatherer(source, records, texts);
  gatherer.Run();
  return !gatherer.HasWords();
}

MessageText GetMessageText(QByteArrayView source, const QString& contentIndex,
                           const TextRequest& request) {
  const QString lineBreak = QStringLiteral("\r\n") + request.linePrefix;
  const std::vector<ContentRecord> records =
      request.withHtml ? MimeCodec::ParseContentIndex(contentIndex, source)
                       : MimeCodec::ParseContentIndex(contentIndex);
  TextGatherer gatherer(source, records, request);
  gatherer.Run();
  MessageText result;
  result.text = gatherer.Text();
  bool isBlank = !gatherer.HasWords();
  if (isBlank) {
    const QString instead = InPlaceOfText(source, records, request, lineBreak);
    isBlank = IsBlank(instead);
    if (!isBlank) result.text = Shortened(instead, request.maximum);
  }
  const QString reports = request.withReports && !gatherer.IsTruncated()
                              ? Reports(source, records, request.charset, isBlank)
                              : QString();
  if (!reports.isEmpty()) {
    if (isBlank) result.text.clear();
    if (!isBlank)
      result.text += result.text.endsWith(lineBreak) ? lineBreak : lineBreak + lineBreak;
    result.text = Shortened(result.text + WithLineBreaks(reports, lineBreak), request.maximum);
  }
  if (request.isWhole) result.text += lineBreak + InnerText(source, records, request);
  result.produced = !result.text.isEmpty();
  return result;
}

namespace {

QString InnerSubject(QByteArrayView source) {
  const QByteArrayView name = "SUBJECT:";
  return MimeCodec::DecodeHeader(MimeCodec::HeaderField(source, name), name.size()) +
         QStringLiteral("\r\n");
}

// A message that holds nothing but other messages, such as a digest, shows their texts.
QString InnerText(QByteArrayView source, const std::vector<ContentRecord>& records,
                  TextRequest request) {
  QString text;
  if (--request.depth < 0) return text;
  request.withHtml = request.isWhole;
  request.maximum = 0;
  request.isInner = true;
  for (const ContentRecord& record : records) {
    const bool isMessage = record.type == u"message/rfc822" || record.type == u"message/global";
    if (!isMessage || record.first > record.last ||
        MimeCodec::TransferEncodingOf(record.encoding.toLatin1()) != TransferEncoding::None) {
      continue;
    }
    const QString index = MimeCodec::ContentIndex(source, record.first, record.last);
    if (request.isWhole) text += InnerSubject(source.sliced(record.first));
    text += GetMessageText(source, index, request).text;
  }
  return text;
}

}  // namespace

QString GetMessageCalendar(QByteArrayView source, const QString& contentIndex,
                           const ReadingCode& charset) {
  return Calendars(source, MimeCodec::ParseContentIndex(contentIndex), charset);
}

QString GetMessageHtml(QByteArrayView source, const QString& contentIndex,
                       const ReadingCode& charset) {
  const std::vector<ContentRecord> records = MimeCodec::ParseContentIndex(contentIndex, source);
  if (!HasHtml(records)) return {};
  const QString html = Html(source, records, charset);
  return html.isNull() ? QStringLiteral("") : html;
}

QSet<qsizetype> HtmlParts(QByteArrayView source, const QString& contentIndex) {
  const std::vector<ContentRecord> records = MimeCodec::ParseContentIndex(contentIndex, source);
  QSet<qsizetype> parts;
  for (const ContentRecord* part : ShownHtml(records)) parts.insert(part->first);
  return parts;
}

}  // namespace vorn
