#include "mail/inspection/pdf_objects.h"

#include <QByteArrayList>
#include <QHash>
#include <algorithm>
#include <optional>

#include "mail/inspection/pdf_tokens.h"

namespace vorn {
namespace {

using Kind = PdfToken::Kind;

// The library unpacks a stream whole, to a thousand times its size at most.
constexpr qsizetype kLargestStream = 64 * 1024;
constexpr qsizetype kMostUnpacked = 32 * 1024 * 1024;
constexpr qint64 kMostDictionaries =
    512 * 1024 * 1024;  // bytes that are read of them; each is read once in an honest file

// The number of the object whose "obj" stands at a place: "5 0 obj", without a comment in its line.
std::optional<int> NumberBefore(QByteArrayView file, qsizetype at) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  qsizetype begin = at;
  const auto skip = [&](auto what) {
    const qsizetype end = begin;
    while (begin > 0 && end - begin < 32 && what(file[begin - 1])) --begin;
    return end > begin;
  };
  if (!skip(IsPdfBlank) || !skip(isDigit) || !skip(IsPdfBlank)) return {};
  const qsizetype end = begin;
  if (!skip(isDigit)) return {};
  for (qsizetype i = begin; i > 0 && file[i - 1] != '\n' && file[i - 1] != '\r'; --i) {
    if (file[i - 1] == '%') return {};
  }
  return file.sliced(begin, end - begin).toByteArray().toInt();
}

struct StreamHead {
  QByteArrayList names;
  QHash<QByteArray, int> numbers;  // by the name before each
  qsizetype content = -1;          // where it begins; -1: no stream
  qsizetype end = 0;               // up to where it was read
};

// The dictionary of a stream that begins at a place.
StreamHead ReadHead(QByteArrayView file, qsizetype at) {
  PdfTokens tokens(file, at);
  StreamHead head;
  if (tokens.Next().kind != Kind::Open) return head;
  int depth = 1;
  while (depth > 0) {
    const PdfToken token = tokens.Next();
    head.end = tokens.At();
    if (token.kind == Kind::End || token.text == "obj" || token.text == "endobj") return head;
    if (token.kind == Kind::Open) ++depth;
    if (token.kind == Kind::Close) --depth;
    if (token.kind == Kind::Name) head.names.append(token.text);
    if (token.kind == Kind::Number && !head.names.isEmpty() &&
        !head.numbers.contains(head.names.last())) {
      head.numbers.insert(head.names.last(), token.text.toInt());
    }
  }
  if (tokens.Next().text != "stream") return head;
  head.content = tokens.At();
  if (file.sliced(head.content).startsWith('\r')) ++head.content;
  if (file.sliced(head.content).startsWith('\n')) ++head.content;
  return head;
}

// What a stream holds; none when it is packed in another way than the usual one, or encrypted.
std::optional<QByteArray> Unpacked(QByteArrayView packed, const QByteArrayList& names) {
  if (!names.contains("Filter")) return packed.toByteArray();
  const auto filters = std::count_if(names.begin(), names.end(), [](const QByteArray& name) {
    return name.endsWith("Decode") || name == "Crypt";
  });
  // What it was packed with may stand in another object.
  if (filters != 1 || !names.contains("FlateDecode") || names.contains("DecodeParms") ||
      names.contains("DP") || packed.size() > kLargestStream) {
    return {};
  }
  const QByteArray sizeGuess("\0\0\x40\0", 4);
  const QByteArray whole = qUncompress(sizeGuess + packed.toByteArray());
  if (whole.isEmpty()) return {};
  return whole;
}

}  // namespace

PdfObjects::PdfObjects(const QByteArray& file) : texts_{file} {
  Index();
}

void PdfObjects::Index() {
  const QByteArray file = texts_[0];
  for (qsizetype at = file.indexOf("obj"); at >= 0; at = file.indexOf("obj", at + 3)) {
    if (at == 0 || !IsPdfBlank(file[at - 1])) continue;
    const qsizetype end = at + 3;
    const bool isWord = end == file.size() || IsPdfBlank(file[end]) ||
                        QByteArrayView("<[(/%+-.0123456789").contains(file[end]);
    if (!isWord) continue;
    const std::optional<int> number = NumberBefore(file, at);
    if (!number) {
      hasUnreadable_ = true;
      continue;
    }
    places_.insert(*number, {0, end});
    ReadStream(end);
  }
}

void PdfObjects::ReadStream(qsizetype at) {
  const QByteArrayView file = texts_[0];
  if (hasUnreadable_) return;
  const StreamHead head = ReadHead(file, at);
  read_ += std::max(qsizetype{0}, head.end - at);
  if (read_ > kMostDictionaries) {
    hasUnreadable_ = true;
    return;
  }
  if (!head.names.contains("ObjStm") && !head.names.contains("First")) return;
  if (head.content < 0) {
    hasUnreadable_ = hasUnreadable_ || head.names.contains("ObjStm");
    return;
  }
  const qsizetype end = file.indexOf("endstream", head.content);
  const QByteArrayView packed =
      file.sliced(head.content, (end < 0 ? file.size() : end) - head.content);
  const std::optional<QByteArray> content = Unpacked(packed, head.names);
  unpacked_ += content ? content->size() : 0;
  if (!content || !head.numbers.contains("First") || unpacked_ > kMostUnpacked) {
    hasUnreadable_ = true;
    return;
  }
  AddStream(*content, head.numbers.value("First"));
}

// It begins with pairs: the number of each object and where it begins behind `first`.
void PdfObjects::AddStream(const QByteArray& content, qsizetype first) {
  texts_.push_back(content);
  PdfTokens head(QByteArrayView(texts_.back()).first(qBound(qsizetype{0}, first, content.size())));
  for (;;) {
    const PdfToken number = head.Next();
    const PdfToken at = head.Next();
    if (at.kind != Kind::Number) return;
    places_.insert(number.text.toInt(), {texts_.size() - 1, first + at.text.toInt()});
  }
}

std::vector<QByteArrayView> PdfObjects::Bodies(int number) const {
  std::vector<QByteArrayView> bodies;
  for (auto [place, end] = places_.equal_range(number); place != end; ++place) {
    const QByteArrayView text = texts_[place->text];
    if (place->at >= 0 && place->at <= text.size()) bodies.push_back(text.sliced(place->at));
  }
  return bodies;
}

}  // namespace vorn
