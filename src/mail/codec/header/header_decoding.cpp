#include "mail/codec/header/header_decoding.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "mail/codec/header/list_splitting.h"
#include "mail/codec/header/transfer_encoding.h"
#include "mail/codec/header/without_controls.h"

namespace vorn::MimeCodec {
namespace {

// A run of the field: raw bytes, or the bytes of adjacent encoded words with one charset. A
// character may begin in one word and end in the next, so the bytes are joined before decoding.
struct FieldRun {
  QByteArray charset;          // null for raw bytes
  QByteArray bytes;            // raw ones are those of the field
  QByteArray unfinished = {};  // base64 whose last group goes on in the next word

  bool IsEncoded() const { return !charset.isNull(); }
};

constexpr char kNoCharset[] = "unknown";

struct EncodedWord {
  QByteArray charset;
  QByteArray text;
  bool isBase64;
  qsizetype length;
};

// The encoded word at the start of `text`. More is accepted than RFC 2047 allows: blanks inside a
// "Q" text and any length.
std::optional<EncodedWord> ReadEncodedWord(QByteArrayView text) {
  if (!text.startsWith("=?")) return std::nullopt;
  const qsizetype charsetEnd = text.indexOf('?', 2);
  if (charsetEnd < 2 || charsetEnd + 3 >= text.size() || text[charsetEnd + 2] != '?') {
    return std::nullopt;
  }
  const char encoding = text[charsetEnd + 1];
  const bool base64 = encoding == 'B' || encoding == 'b';
  if (!base64 && encoding != 'Q' && encoding != 'q') return std::nullopt;
  const qsizetype start = charsetEnd + 3;
  qsizetype end = text.indexOf("?=", start);
  qsizetype length = end + 2;
  if (end < 0) {
    // The end was cut off.
    length = text.size();
    end = length - (text.endsWith('?') ? 1 : 0);
    if (text.sliced(start, end - start).contains(' ')) return std::nullopt;
  }
  QByteArray charset = text.sliced(2, charsetEnd - 2).toByteArray();
  if (charset.contains(' ')) return std::nullopt;
  if (charset.isEmpty()) charset = kNoCharset;
  if (const qsizetype language = charset.indexOf('*'); language > 0) {
    charset.truncate(language);  // RFC 2231 section 5
  }
  return EncodedWord{charset.toLower(),
                     text.sliced(start, qMax(end - start, qsizetype{0})).toByteArray(), base64,
                     length};
}

// Appends a word's bytes, together with the group of four that the word before it did not finish,
// as programs cut base64 that count characters.
void AddWord(FieldRun& run, const EncodedWord& word) {
  const QByteArray before = word.isBase64 ? run.unfinished : QByteArray();
  run.bytes.chop(DecodeEncodedWord(before, true).size());
  const QByteArray text = before + word.text;
  run.bytes += DecodeEncodedWord(text, word.isBase64);
  const bool goesOn = word.isBase64 && text.size() % 4 != 0 && !text.endsWith('=');
  run.unfinished = goesOn ? text.last(text.size() % 4) : QByteArray();
}

bool IsBlankRun(QByteArrayView text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
}

std::vector<FieldRun> SplitRuns(QByteArrayView text) {
  std::vector<FieldRun> runs;
  qsizetype rawStart = 0;
  qsizetype at = 0;
  const auto endRaw = [&](qsizetype end) {
    if (end > rawStart) {
      runs.push_back(
          {QByteArray(), QByteArray::fromRawData(text.data() + rawStart, end - rawStart)});
    }
  };
  while (at < text.size()) {
    const qsizetype mark = text.indexOf("=?", at);
    if (mark < 0) break;
    auto word = ReadEncodedWord(text.sliced(mark));
    if (!word) {
      at = mark + 2;
      continue;
    }
    const bool followsWord = !runs.empty() && runs.back().IsEncoded() &&
                             IsBlankRun(text.sliced(rawStart, mark - rawStart));
    if (!followsWord) endRaw(mark);
    if (!followsWord || runs.back().charset != word->charset) runs.push_back({word->charset, {}});
    AddWord(runs.back(), *word);
    at = rawStart = mark + word->length;
  }
  endRaw(text.size());
  return runs;
}

QString QuoteForList(const QString& name) {
  static const QString kSpecials = QStringLiteral(",;:<>()@\"\\");
  const bool isSafe =
      std::none_of(name.begin(), name.end(), [](QChar c) { return kSpecials.contains(c); });
  if (isSafe) return name;
  QString quoted = name;
  quoted.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
  return u'"' + quoted + u'"';
}

bool IsNamedMailbox(const QString& item) {
  const qsizetype open = item.lastIndexOf(u'<');
  return open > 0 && item.endsWith(u'>') && item.indexOf(u'@', open) > open &&
         item.count(u'<') == 1;
}

// "name <address>", or several, in one word, as programs write that encode a whole field.
bool IsWholeList(const QString& words) {
  const QStringList items = SplitList(words, u',');
  return std::all_of(items.begin(), items.end(), IsNamedMailbox);
}

// Whether a text that grows ends inside a quoted string, where no further quotes are put.
class Quotes {
 public:
  bool AreOpen(const QString& text) {
    for (; at_ < text.size(); ++at_) {
      if (areOpen_ && text[at_] == u'\\') {
        ++at_;
      } else if (text[at_] == u'"') {
        areOpen_ = !areOpen_;
      }
    }
    return areOpen_;
  }

 private:
  qsizetype at_ = 0;
  bool areOpen_ = false;
};

}  // namespace

QString DecodeHeader(QByteArrayView field, qsizetype skip, const ReadingCode& charset,
                     HeaderUse use) {
  const QByteArrayView text = field.sliced(std::min(skip, field.size())).trimmed();
  const std::vector<FieldRun> runs = SplitRuns(text);
  QString decoded;
  QString words;  // in several codes, but one name
  Quotes quotes;
  const auto endWords = [&](bool isEnd) {
    const bool mayQuote = use == HeaderUse::AddressList && !quotes.AreOpen(decoded) &&
                          !(isEnd && !decoded.contains(u'@') && IsWholeList(words));
    decoded += mayQuote ? QuoteForList(words) : words;
    words.clear();
  };
  for (const FieldRun& run : runs) {
    if (run.IsEncoded()) {
      words += WithoutControls(DecodeWord(run.bytes, Charset::FromLabel(run.charset), charset));
      continue;
    }
    endWords(false);
    decoded += WithoutControls(DecodeRawHeader(run.bytes, charset));
  }
  endWords(true);
  return decoded;
}

}  // namespace vorn::MimeCodec
