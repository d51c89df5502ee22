#include "mail/codec/header/header_fields.h"

#include <QtGlobal>
#include <algorithm>
#include <cstring>
#include <optional>

#include "mail/codec/charset/character_kinds.h"

namespace vorn::MimeCodec {
namespace {

// The length of the field's name, blanks before the colon left out; -1 for a line that is no field.
qsizetype NameLength(QByteArrayView field) {
  const qsizetype colon = std::find(field.begin(), field.end(), ':') - field.begin();
  if (colon == 0 || colon == field.size() || IsBlank(field[0])) return -1;
  qsizetype length = colon;
  while (length > 0 && IsBlank(field[length - 1])) --length;
  return length;
}

// A name of printable characters without blanks (RFC 5322 section 2.2), or the line that an mbox
// puts before a message.
bool BeginsField(QByteArrayView line) {
  qsizetype at = 0;
  while (at < line.size() && line[at] > ' ' && line[at] < 0x7F && line[at] != ':') ++at;
  const qsizetype nameEnd = at;
  while (at < line.size() && IsBlank(line[at])) ++at;
  const bool isField = nameEnd > 0 && at < line.size() && line[at] == ':';
  return isField || line.startsWith("From ") || line.startsWith(">From ");
}

// Fields that no text has by chance.
bool IsUsualField(QByteArrayView line) {
  if (!BeginsField(line)) return false;
  const QByteArray name = line.first(qMax(NameLength(line), qsizetype{0})).toByteArray().toLower();
  for (const QByteArrayView usual :
       {"from", "to", "cc", "subject", "date", "message-id", "received", "return-path",
        "mime-version", "reply-to", "sender", "references", "in-reply-to", "delivered-to"}) {
    if (usual == name) return true;
  }
  return name.startsWith("content-") || name.startsWith("x-") || name.startsWith("list-");
}

}  // namespace

// A CR that is followed by another and by text is an empty line; CR CR LF are one line break.
char LineEnd(QByteArrayView source) {
  constexpr qsizetype kWithin = 64 * 1024;
  const QByteArrayView start = source.first(qMin(source.size(), kWithin));
  const qsizetype found = start.indexOf('\n');
  if (found < 0) return '\r';
  QByteArrayView line = start.first(found);
  while (line.endsWith('\r')) line.chop(1);
  return line.contains('\r') && line.contains("\r\r") ? '\r' : '\n';
}

namespace {

// Walks the fields of a header block, each with its continuation lines. Programs forget the empty
// line behind it, or put a blank into it; a line that is no field, with nothing but such lines up
// to the next empty one, begins the text.
class FieldWalker {
 public:
  FieldWalker(QByteArrayView source, qsizetype start, qsizetype end)
      : source_(source.first(end < 0 ? source.size() : qMin(end + 1, source.size()))),
        at_(qMin(start, source_.size())),
        lineEnd_(LineEnd(source_)) {
    constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");
    if (source_.sliced(at_).startsWith(kByteOrderMark)) at_ += kByteOrderMark.size();
  }

  // The next field with its line breaks, without the last one; null at the end of the block.
  QByteArrayView Next() {
    if (at_ >= source_.size()) return {};
    const qsizetype start = at_;
    qsizetype lineEnd = EndOfLine(at_);
    if (ContentEnd(start, lineEnd) == start) return {};  // the empty line
    if (!BeginsField(source_.sliced(start, lineEnd - start)) && TextBegins(start)) {
      hasEmptyLine_ = IsBlankLine(start, lineEnd);
      return {};
    }
    while (lineEnd < source_.size() && IsBlank(source_[lineEnd])) {
      const qsizetype next = EndOfLine(lineEnd);
      if (IsBlankLine(lineEnd, next) && TextBegins(lineEnd)) break;
      lineEnd = next;
    }
    at_ = lineEnd;
    return source_.sliced(start, ContentEnd(start, lineEnd) - start);
  }

  // The offset after the empty line, once `Next` has returned null.
  qsizetype BlockEnd() const {
    if (at_ >= source_.size()) return source_.size();
    return hasEmptyLine_ ? EndOfLine(at_) : at_;
  }

 private:
  qsizetype EndOfLine(qsizetype from) const {
    if (from >= source_.size()) return source_.size();
    const void* const found =
        std::memchr(source_.data() + from, lineEnd_, static_cast<size_t>(source_.size() - from));
    return found == nullptr ? source_.size() : static_cast<const char*>(found) - source_.data() + 1;
  }
  qsizetype ContentEnd(qsizetype start, qsizetype lineEnd) const {
    if (lineEnd > start && source_[lineEnd - 1] == '\n') --lineEnd;
    while (lineEnd > start && source_[lineEnd - 1] == '\r') --lineEnd;
    return lineEnd;
  }
  bool IsBlankLine(qsizetype start, qsizetype lineEnd) const {
    return std::all_of(source_.begin() + start, source_.begin() + lineEnd,
                       [](char c) { return IsBlank(c) || c == '\r' || c == '\n'; });
  }
  // Whether no usual field comes between that line and the next empty one.
  bool TextBegins(qsizetype line) {
    if (!lastUsual_) {
      lastUsual_ = -1;
      for (qsizetype at = line; at < source_.size();) {
        const qsizetype next = EndOfLine(at);
        if (ContentEnd(at, next) == at) break;
        if (IsUsualField(source_.sliced(at, next - at))) lastUsual_ = at;
        at = next;
      }
    }
    return line > *lastUsual_;
  }

  QByteArrayView source_;
  qsizetype at_;
  char lineEnd_;  // some old programs end lines with a lone CR
  bool hasEmptyLine_ = true;
  std::optional<qsizetype> lastUsual_;  // where the last one before the empty line begins
};

bool HasName(QByteArrayView field, QByteArrayView nameWithColon) {
  const qsizetype length = nameWithColon.size() - 1;
  return field.size() > length && NameLength(field) == length &&
         qstrnicmp(field.data(), length, nameWithColon.data(), length) == 0;
}

QByteArray Unfold(QByteArrayView field) {
  const qsizetype nameLength = NameLength(field);
  QByteArray unfolded;
  unfolded.reserve(field.size());
  qsizetype at = 0;
  if (nameLength > 0) {
    unfolded.append(field.first(nameLength)).append(':');
    at = field.indexOf(':') + 1;
  }
  const auto isBreak = [](char c) { return c == '\n' || c == '\r'; };
  while (at < field.size()) {
    const auto lineEnd = std::find_if(field.begin() + at, field.end(), isBreak);
    const qsizetype end = lineEnd - field.begin();
    unfolded.append(field.sliced(at, end - at));
    at = std::find_if_not(lineEnd, field.end(), isBreak) - field.begin();
    // The tab that many programs fold with stands for the blank that was there before.
    if (end < at && at < field.size() && field[at] == '\t') {
      unfolded += ' ';
      ++at;
    }
  }
  return unfolded;
}

}  // namespace

QByteArray HeaderField(QByteArrayView source, QByteArrayView name, qsizetype start, qsizetype end) {
  FieldWalker walker(source, start, end);
  for (QByteArrayView field = walker.Next(); !field.isNull(); field = walker.Next()) {
    if (HasName(field, name)) return Unfold(field);
  }
  return {};
}

QByteArrayList HeaderFields(QByteArrayView source, QByteArrayView name) {
  QByteArrayList fields;
  FieldWalker walker(source, 0, -1);
  for (QByteArrayView field = walker.Next(); !field.isNull(); field = walker.Next()) {
    if (HasName(field, name)) fields.append(Unfold(field));
  }
  return fields;
}

QByteArrayList AllHeaders(QByteArrayView source) {
  QByteArrayList fields;
  FieldWalker walker(source, 0, -1);
  for (QByteArrayView field = walker.Next(); !field.isNull(); field = walker.Next()) {
    if (NameLength(field) >= 0) fields.append(Unfold(field));
  }
  return fields;
}

QByteArray HeaderValue(QByteArrayView field, qsizetype nameLength) {
  return field.sliced(qMin(nameLength, field.size())).trimmed().toByteArray();
}

qsizetype HeaderBlockEnd(QByteArrayView source, qsizetype start, qsizetype end) {
  FieldWalker walker(source, start, end);
  while (!walker.Next().isNull()) {
  }
  return walker.BlockEnd();
}

}  // namespace vorn::MimeCodec
