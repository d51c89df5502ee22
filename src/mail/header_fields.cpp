#include "mail/header_fields.h"

#include <QtGlobal>

namespace vorn::MimeCodec {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// Walks the fields of a header block, each with its continuation lines.
class FieldWalker {
 public:
  FieldWalker(QByteArrayView source, qsizetype start, qsizetype end)
      : source_(source.first(end < 0 ? source.size() : qMin(end + 1, source.size()))),
        at_(qMin(start, source_.size())) {}

  // The next field with its line breaks, without the last one; null at the end of the block.
  QByteArrayView Next() {
    if (at_ >= source_.size()) return {};
    const qsizetype start = at_;
    qsizetype lineEnd = EndOfLine(at_);
    if (ContentEnd(start, lineEnd) == start) return {};  // the empty line
    while (lineEnd < source_.size() && IsBlank(source_[lineEnd])) {
      const qsizetype next = EndOfLine(lineEnd);
      lineEnd = next;
    }
    at_ = lineEnd;
    return source_.sliced(start, ContentEnd(start, lineEnd) - start);
  }

  // The offset after the empty line, once `Next` has returned null.
  qsizetype BlockEnd() const { return at_ < source_.size() ? EndOfLine(at_) : source_.size(); }

 private:
  qsizetype EndOfLine(qsizetype from) const {
    const qsizetype found = source_.indexOf('\n', from);
    return found < 0 ? source_.size() : found + 1;
  }
  qsizetype ContentEnd(qsizetype start, qsizetype lineEnd) const {
    if (lineEnd > start && source_[lineEnd - 1] == '\n') --lineEnd;
    if (lineEnd > start && source_[lineEnd - 1] == '\r') --lineEnd;
    return lineEnd;
  }

  QByteArrayView source_;
  qsizetype at_;
};

// The length of the field's name, blanks before the colon left out; -1 for a line that is no field.
qsizetype NameLength(QByteArrayView field) {
  const qsizetype colon = field.indexOf(':');
  if (colon <= 0 || IsBlank(field[0])) return -1;
  qsizetype length = colon;
  while (length > 0 && IsBlank(field[length - 1])) --length;
  return length;
}

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
  for (; at < field.size(); ++at) {
    const char c = field[at];
    const bool isBreak = c == '\n' || (c == '\r' && at + 1 < field.size() && field[at + 1] == '\n');
    if (!isBreak) {
      unfolded += c;
      continue;
    }
    if (c == '\r') ++at;
    // The tab that many programs fold with stands for the blank that was there before.
    if (at + 1 < field.size() && field[at + 1] == '\t') {
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

QByteArray HeaderAt(QByteArrayView source, qsizetype index) {
  FieldWalker walker(source, 0, -1);
  for (QByteArrayView field = walker.Next(); !field.isNull(); field = walker.Next()) {
    if (NameLength(field) >= 0 && index-- == 0) return Unfold(field);
  }
  return {};
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
