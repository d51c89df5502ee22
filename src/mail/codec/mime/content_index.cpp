#include "mail/codec/mime/content_index.h"

#include <QStringList>
#include <algorithm>
#include <optional>

#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/header/header_decoding.h"
#include "mail/codec/header/header_fields.h"
#include "mail/codec/header/header_parameters.h"
#include "mail/codec/header/transfer_encoding.h"
#include "mail/codec/header/uuencoding.h"
#include "mail/codec/header/yencoding.h"

namespace vorn::MimeCodec {
namespace {

constexpr size_t kMaxPartDepth = 100;
constexpr size_t kMaxParts = 10000;

const QString kRecordSeparator = QStringLiteral("\r\n");
constexpr QChar kFieldSeparator = u'\0';

// Nothing that a message says may look like a separator of the index.
QString Sanitized(QString text) {
  std::replace_if(
      text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x20; }, QChar(u'_'));
  return text;
}

QByteArray FieldValue(QByteArrayView source, QByteArrayView name, const ContentRecord& record) {
  return HeaderValue(HeaderField(source, name, record.headerFirst, record.headerLast), name.size());
}

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Goes through a source once, line by line, with the boundaries of the open multiparts on a stack.
class ContentReader {
 public:
  ContentReader(QByteArrayView source, qsizetype start, qsizetype end)
      : source_(source.first(end < 0 ? source.size() : qMin(end + 1, source.size()))),
        at_(start),
        lineEnd_(LineEnd(source_)) {}

  std::vector<ContentRecord> Run() {
    BeginPart();
    for (qsizetype dashes = NextDashes(at_); dashes >= 0; dashes = NextDashes(at_)) {
      const qsizetype found = source_.indexOf(lineEnd_, dashes);
      at_ = found < 0 ? source_.size() : found + 1;
      TakeDelimiter(dashes);
    }
    at_ = source_.size();
    EndLeaf(source_.size());
    while (!stack_.empty()) CloseMultipart(source_.size());
    PushRest();
    return std::move(records_);
  }

 private:
  struct Multipart {
    QByteArray boundary;
    ContentRecord whole;  // its own headers, and the body for when no part is found
    bool hasParts = false;
    bool isDigest = false;
    bool isClosed = false;  // the outermost one; what follows its end may be parts all the same
    int alternative = 0;    // its number among those
    int begun = 0;          // parts of it
  };

  // The next line that begins with "--", or -1. Looking for the dashes themselves passes over most
  // of a message, above all base64, much faster than looking at every line.
  qsizetype NextDashes(qsizetype from) const {
    if (stack_.empty()) return -1;
    for (qsizetype at = source_.indexOf('-', from); at >= 0; at = source_.indexOf('-', at + 1)) {
      const bool beginsLine = at == 0 || source_[at - 1] == lineEnd_;
      if (beginsLine && at + 1 < source_.size() && source_[at + 1] == '-') return at;
    }
    return -1;
  }

  // Reads the headers at the current position; what follows is a leaf or opens a multipart.
  void BeginPart() {
    ContentRecord record;
    record.headerFirst = at_;
    at_ = HeaderBlockEnd(source_.first(PartHeaderLimit()), at_);
    record.headerLast = at_ - 1;
    record.first = at_;
    // A source without any header is all text.
    const HeaderParameters type(FieldValue(source_, "Content-Type:", record));
    ReadType(type, record);
    QByteArray boundary = type.Bytes("boundary").trimmed();
    const bool isOutermost = stack_.empty();
    if (record.type.startsWith(u"multipart/") &&
        (boundary.isEmpty() || (isOutermost && !HasDelimiter(boundary)))) {
      const QByteArray used = FirstDelimiter();
      if (!used.isEmpty()) boundary = used;
    }
    if (record.type.startsWith(u"multipart/")) {
      if (!boundary.isEmpty() && stack_.size() < kMaxPartDepth) {
        stack_.push_back({boundary, record, false, record.type == u"multipart/digest"});
        if (record.type == u"multipart/alternative") stack_.back().alternative = ++alternatives_;
        return;
      }
      record.type = QStringLiteral("text/plain");
    }
    leaf_ = record;
    inLeaf_ = true;
  }

  bool HasDelimiter(const QByteArray& boundary) const {
    const QByteArray delimiter = "--" + boundary;
    for (qsizetype at = source_.indexOf(delimiter, at_); at >= 0;
         at = source_.indexOf(delimiter, at + 1)) {
      const qsizetype end = at + delimiter.size();
      const bool beginsLine = at == 0 || source_[at - 1] == lineEnd_;
      const QByteArrayView behind = source_.sliced(end, qMin(source_.size() - end, qsizetype{2}));
      const bool isWhole = behind.isEmpty() || behind == "--" || IsSpace(behind.front());
      if (beginsLine && isWhole) return true;
    }
    return false;
  }

  // The boundary of a multipart whose header names none or another one: the first line that could
  // be one and comes again with "--" behind it.
  QByteArray FirstDelimiter() {
    constexpr int kMost = 100;  // each looks through all that follows
    if (++guesses_ > kMost) return {};
    const qsizetype start = source_.indexOf("--", at_);
    if (start < 0 || (start > 0 && source_[start - 1] != lineEnd_)) return {};
    const qsizetype end = source_.indexOf(lineEnd_, start);
    const QByteArrayView line = source_.sliced(start, qMax(end - start, qsizetype{0})).trimmed();
    const bool isClosed = line.size() > 2 && source_.indexOf(line.toByteArray() + "--", end) >= 0;
    return isClosed ? line.sliced(2).toByteArray() : QByteArray();
  }

  // A part whose headers run into the next delimiter has no body.
  qsizetype PartHeaderLimit() const {
    for (qsizetype at = at_; !stack_.empty() && at < source_.size();) {
      const qsizetype found = source_.indexOf(lineEnd_, at);
      const qsizetype next = found < 0 ? source_.size() : found + 1;
      const QByteArrayView line = source_.sliced(at, next - at);
      if (line.trimmed().isEmpty()) break;
      if (line.startsWith("--") && MatchBoundary(line)) return at;
      at = next;
    }
    return source_.size();
  }

  void ReadType(const HeaderParameters& type, ContentRecord& record) const {
    const bool inDigest = !stack_.empty() && stack_.back().isDigest;
    record.type = Sanitized(QString::fromLatin1(type.Main()));
    const qsizetype slash = record.type.indexOf(u'/');
    if (slash <= 0 || slash + 1 == record.type.size()) {
      record.type = type.Main().isEmpty() && inDigest ? QStringLiteral("message/rfc822")
                                                      : QStringLiteral("text/plain");
    }
    const HeaderParameters encoding(FieldValue(source_, "Content-Transfer-Encoding:", record));
    record.encoding = Sanitized(QString::fromLatin1(encoding.Main()));
    const HeaderParameters disposition(FieldValue(source_, "Content-Disposition:", record));
    const auto typeName = [&type] { return type.Reading("name"); };
    record.name = Sanitized(MoreReadable(disposition.Reading("filename"), typeName).text);
    record.hasName = !record.name.isEmpty();
    const auto outermost = std::find_if(stack_.begin(), stack_.end(),
                                        [](const Multipart& open) { return open.alternative > 0; });
    if (outermost == stack_.end()) return;
    record.alternative = outermost->alternative;
    record.form = outermost->begun;
  }

  struct Delimiter {
    qsizetype level;  // of the open multiparts
    bool closes;
  };

  // That of the innermost open multipart whose delimiter the line is.
  std::optional<Delimiter> MatchBoundary(QByteArrayView line) const {
    while (!line.isEmpty() && (line.back() == '\n' || line.back() == '\r' || line.back() == ' ' ||
                               line.back() == '\t')) {
      line.chop(1);
    }
    line = line.sliced(2);
    for (qsizetype i = static_cast<qsizetype>(stack_.size()) - 1; i >= 0; --i) {
      const QByteArrayView boundary = stack_[static_cast<size_t>(i)].boundary;
      const bool closes = line.size() == boundary.size() + 2 && line.endsWith("--");
      if (line.startsWith(boundary) && (line.size() == boundary.size() || closes)) {
        return Delimiter{i, closes};
      }
    }
    return std::nullopt;
  }

  void TakeDelimiter(qsizetype lineStart) {
    const auto delimiter = MatchBoundary(source_.sliced(lineStart, at_ - lineStart));
    if (!delimiter) return;
    const qsizetype level = delimiter->level;
    // The line break before a delimiter belongs to it (RFC 2046 section 5.1.1).
    qsizetype bodyEnd = lineStart;
    if (bodyEnd > 0 && source_[bodyEnd - 1] == '\n') --bodyEnd;
    if (bodyEnd > 0 && source_[bodyEnd - 1] == '\r') --bodyEnd;
    EndLeaf(bodyEnd);
    while (static_cast<qsizetype>(stack_.size()) > level + 1) CloseMultipart(bodyEnd);
    if (delimiter->closes && level == 0) {
      stack_.back().isClosed = true;
      rest_ = at_;
    } else if (delimiter->closes) {
      CloseMultipart(bodyEnd);
    } else if (records_.size() < kMaxParts) {
      stack_.back().hasParts = true;
      ++stack_.back().begun;
      rest_.reset();
      BeginPart();
    }
  }

  void EndLeaf(qsizetype end) {
    if (!inLeaf_) return;
    inLeaf_ = false;
    leaf_.last = qMax(end, leaf_.first) - 1;
    const bool mayHoldBlocks =
        leaf_.type == u"text/plain" && !leaf_.hasName &&
        TransferEncodingOf(leaf_.encoding.toLatin1()) == TransferEncoding::None;
    if (mayHoldBlocks && source_.sliced(leaf_.first, leaf_.Size()).contains("begin ")) {
      PushTextWithBlocks();
    } else {
      records_.push_back(leaf_);
    }
  }

  // Blocks inside a text are files of their own; the text around them stays text.
  void PushTextWithBlocks() {
    const QByteArrayView text = source_.sliced(leaf_.first, leaf_.Size());
    qsizetype at = 0;
    bool pushed = false;
    const auto push = [&](qsizetype first, qsizetype last, ContentRecord record) {
      record.first = leaf_.first + first;
      record.last = leaf_.first + last;
      records_.push_back(std::move(record));
      pushed = true;
    };
    while (records_.size() < kMaxParts) {
      auto block = FindUuBlock(text, at);
      const auto yenc = FindYencBlock(text, at);
      const bool isYenc = yenc && (!block || yenc->first < block->first);
      if (isYenc) block = yenc;
      if (!block) break;
      if (block->first > at) push(at, block->first - 1, leaf_);
      ContentRecord file = leaf_;
      file.type = QStringLiteral("application/octet-stream");
      file.encoding = isYenc ? QStringLiteral("x-yenc") : QStringLiteral("uuencode");
      file.name = Sanitized(DecodeHeader(block->name, 0));
      file.hasName = true;
      push(block->first, block->last, file);
      at = block->last + 1;
    }
    if (at < text.size() || !pushed) push(at, text.size() - 1, leaf_);
  }

  // What a mailing list or a gateway put behind the end of a multipart, which has no part for it.
  // The end mark of a stored message is none of that.
  void PushRest() {
    if (!rest_ || records_.size() >= kMaxParts) return;
    const QByteArrayView text = source_.sliced(*rest_).trimmed();
    if (text.isEmpty() || text == ".") return;
    ContentRecord record;
    record.headerFirst = record.first = *rest_;
    record.headerLast = record.headerFirst - 1;
    record.last = source_.size() - 1;
    record.type = QStringLiteral("text/plain");
    records_.push_back(record);
  }

  void CloseMultipart(qsizetype end) {
    Multipart multipart = std::move(stack_.back());
    stack_.pop_back();
    if (multipart.hasParts) return;
    leaf_ = std::move(multipart.whole);
    leaf_.type = QStringLiteral("text/plain");
    inLeaf_ = true;
    EndLeaf(end);
  }

  QByteArrayView source_;
  qsizetype at_;
  char lineEnd_;
  std::optional<qsizetype> rest_;  // where the text behind the end of the message's parts begins
  std::vector<Multipart> stack_;
  std::vector<ContentRecord> records_;
  ContentRecord leaf_;
  bool inLeaf_ = false;
  int alternatives_ = 0;
  int guesses_ = 0;
};

}  // namespace

std::vector<ContentRecord> ReadContent(QByteArrayView source, qsizetype start, qsizetype end) {
  return ContentReader(source, start, end).Run();
}

QString FormatContentIndex(const std::vector<ContentRecord>& records) {
  QStringList lines;
  for (const ContentRecord& record : records) {
    QStringList fields{
        QString::number(record.headerFirst), QString::number(record.headerLast), record.type,
        QString::number(record.first),       QString::number(record.last),       record.encoding};
    if (record.hasName) fields.append(record.name);
    lines.append(fields.join(kFieldSeparator));
  }
  return lines.join(kRecordSeparator);
}

std::vector<ContentRecord> ParseContentIndex(const QString& index) {
  std::vector<ContentRecord> records;
  for (const QString& line : index.split(kRecordSeparator)) {
    const QStringList fields = line.split(kFieldSeparator);
    if (fields.size() != 6 && fields.size() != 7) continue;
    ContentRecord record;
    record.headerFirst = fields[0].toLongLong();
    record.headerLast = fields[1].toLongLong();
    record.type = fields[2];
    record.first = fields[3].toLongLong();
    record.last = fields[4].toLongLong();
    record.encoding = fields[5];
    record.hasName = fields.size() == 7;
    record.name = fields.value(6);
    records.push_back(record);
  }
  return records;
}

std::vector<ContentRecord> ParseContentIndex(const QString& index, QByteArrayView source) {
  std::vector<ContentRecord> records = ParseContentIndex(index);
  qsizetype end = -1;  // behind it nothing is one of several forms of a text
  bool hasHtml = false;
  for (const ContentRecord& record : records) {
    hasHtml = hasHtml || record.type == u"text/html";
    if (record.type.startsWith(u"text/")) end = qMax(end, record.last);
  }
  if (!hasHtml || end < 0) return records;
  for (const ContentRecord& read : ReadContent(source, 0, end)) {
    const auto same =
        std::find_if(records.begin(), records.end(),
                     [&read](const ContentRecord& record) { return record.first == read.first; });
    if (same == records.end()) continue;
    same->alternative = read.alternative;
    same->form = read.form;
  }
  return records;
}

QString ContentIndex(QByteArrayView source, qsizetype start, qsizetype end) {
  return FormatContentIndex(ReadContent(source, start, end));
}

HeaderParameters ContentType(QByteArrayView source, const ContentRecord& record) {
  return HeaderParameters(FieldValue(source, "Content-Type:", record));
}

bool HasEndMark(QByteArrayView source) {
  return source.endsWith("\r\n.\r\n") && HeaderField(source, "Received:").isNull();
}

QByteArray WithoutEndMark(const QByteArray& source) {
  return HasEndMark(source) ? source.chopped(kEndMarkLength) : source;
}

Charset DeclaredCharset(QByteArrayView source, const ContentRecord& record) {
  return Charset::FromLabel(ContentType(source, record).Bytes("charset"));
}

Charset TextCharset(QByteArrayView source, const std::vector<ContentRecord>& records) {
  for (const ContentRecord& record : records) {
    if (!record.type.startsWith(u"text/", Qt::CaseInsensitive)) continue;
    const Charset declared = DeclaredCharset(source, record);
    if (declared.family != Charset::Family::Unknown) return declared;
  }
  return {};
}

}  // namespace vorn::MimeCodec
