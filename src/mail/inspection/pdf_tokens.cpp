#include "mail/inspection/pdf_tokens.h"

#include <algorithm>

namespace vorn {
namespace {

bool IsDelimiter(char c) {
  return QByteArrayView("()<>[]{}/%").contains(c);
}

bool IsHex(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

}  // namespace

bool IsPdfBlank(char c) {
  return c == '\0' || c == '\t' || c == '\n' || c == '\f' || c == '\r' || c == ' ';
}

void PdfTokens::SkipBlanks() {
  bool isComment = false;
  for (; at_ < bytes_.size(); ++at_) {
    const char c = bytes_[at_];
    if (c == '%') isComment = true;
    if (c == '\n' || c == '\r') isComment = false;
    if (!isComment && !IsPdfBlank(c)) return;
  }
}

PdfToken PdfTokens::ReadName() {
  QByteArray name;
  for (++at_; at_ < bytes_.size() && !IsPdfBlank(bytes_[at_]) && !IsDelimiter(bytes_[at_]); ++at_) {
    const bool isEscape = bytes_[at_] == '#' && at_ + 2 < bytes_.size() && IsHex(bytes_[at_ + 1]) &&
                          IsHex(bytes_[at_ + 2]);
    if (isEscape) {
      name += QByteArray::fromHex(bytes_.sliced(at_ + 1, 2).toByteArray());
      at_ += 2;
    } else {
      name += bytes_[at_];
    }
  }
  return {PdfToken::Kind::Name, name};
}

PdfToken PdfTokens::ReadString() {
  int depth = 0;
  for (; at_ < bytes_.size(); ++at_) {
    if (bytes_[at_] == '\\') {
      ++at_;
    } else if (bytes_[at_] == '(') {
      ++depth;
    } else if (bytes_[at_] == ')' && --depth == 0) {
      ++at_;
      break;
    }
  }
  at_ = std::min(at_, bytes_.size());
  return {PdfToken::Kind::String, {}};
}

PdfToken PdfTokens::ReadPlain() {
  const qsizetype begin = at_;
  while (at_ < bytes_.size() && !IsPdfBlank(bytes_[at_]) && !IsDelimiter(bytes_[at_])) ++at_;
  if (at_ == begin) ++at_;  // a delimiter that stands alone
  const QByteArray text = bytes_.sliced(begin, at_ - begin).toByteArray();
  const bool isNumber = std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= '0' && c <= '9') || QByteArrayView("+-.").contains(c);
  });
  return {isNumber ? PdfToken::Kind::Number : PdfToken::Kind::Word, text};
}

PdfToken PdfTokens::Next() {
  SkipBlanks();
  if (at_ >= bytes_.size()) return {};
  const char c = bytes_[at_];
  const bool isDouble = at_ + 1 < bytes_.size() && bytes_[at_ + 1] == c;
  if (c == '/') return ReadName();
  if (c == '(') return ReadString();
  if ((c == '<' || c == '>') && isDouble) {
    at_ += 2;
    return {c == '<' ? PdfToken::Kind::Open : PdfToken::Kind::Close, {}};
  }
  if (c == '<') {
    const qsizetype end = bytes_.indexOf('>', at_);
    at_ = end < 0 ? bytes_.size() : end + 1;
    return {PdfToken::Kind::String, {}};
  }
  if (c != '[' && c != ']') return ReadPlain();
  ++at_;
  return {c == '[' ? PdfToken::Kind::OpenArray : PdfToken::Kind::CloseArray, {}};
}

}  // namespace vorn
