#include "mail/codec/header/list_splitting.h"

namespace vorn::MimeCodec {
namespace {

// Follows quotes, brackets and comments through a text.
class Nesting {
 public:
  explicit Nesting(QStringView text)
      : lastQuote_(text.lastIndexOf(u'"')),
        lastBracket_(text.lastIndexOf(u'>')),
        lastComment_(text.lastIndexOf(u')')) {}

  // Whether the character stands inside something, marks included.
  bool Enter(QStringView text, qsizetype& at) {
    const QChar c = text[at];
    if (quoted_) {
      if (c == u'\\' && at + 1 < text.size()) {
        ++at;
      } else if (c == u'"') {
        quoted_ = false;
      }
      return true;
    }
    if (comments_ > 0 && c == u'\\' && at + 1 < text.size()) {
      ++at;
      return true;
    }
    if (c == u'"') {
      quoted_ = lastQuote_ > at;  // a lone quote encloses nothing
    } else if (c == u'<' && !bracketed_) {
      bracketed_ = lastBracket_ > at;
    } else if (c == u'>') {
      const bool was = bracketed_;
      bracketed_ = false;
      return was;
    } else if (c == u'(' && !bracketed_) {
      comments_ += lastComment_ > at ? 1 : 0;
    } else if (c == u')' && comments_ > 0) {
      --comments_;
      return true;
    }
    return quoted_ || bracketed_ || comments_ > 0;
  }

  bool Bracketed() const { return bracketed_; }

 private:
  qsizetype lastQuote_;
  qsizetype lastBracket_;
  qsizetype lastComment_;
  bool quoted_ = false;
  bool bracketed_ = false;
  int comments_ = 0;
};

// A full-width blank is a character of a name, between family and given name for instance.
bool IsBlank(QChar c) {
  return c.isSpace() && c != QChar(0x3000);
}

void AppendTrimmed(QStringList& list, const QString& text, qsizetype start, qsizetype end) {
  const QString item = text.mid(start, end - start).trimmed();
  if (!item.isEmpty()) list.append(item);
}

}  // namespace

void ForEachItem(QStringView text, QChar separator, qsizetype start,
                 const std::function<void(QStringView)>& take) {
  Nesting nesting(text);
  qsizetype itemStart = start;
  for (qsizetype at = start; at < text.size(); ++at) {
    const QChar c = text[at];
    if (nesting.Enter(text, at) || c != separator) continue;
    take(text.sliced(itemStart, at - itemStart).trimmed());
    itemStart = at + 1;
  }
  take(text.sliced(qMin(itemStart, text.size())).trimmed());
}

QStringList SplitList(const QString& text, QChar separator, qsizetype start) {
  QStringList items;
  ForEachItem(text, separator, start,
              [&items](QStringView item) { items.append(item.toString()); });
  return items;
}

QStringList SplitWords(const QString& item) {
  QStringList words;
  Nesting nesting(item);
  qsizetype wordStart = 0;
  for (qsizetype at = 0; at < item.size(); ++at) {
    const qsizetype here = at;
    const bool wasBracketed = nesting.Bracketed();
    const bool inside = nesting.Enter(item, at);
    const bool opens = !wasBracketed && nesting.Bracketed();
    const bool closes = wasBracketed && !nesting.Bracketed();
    if (opens || (!inside && IsBlank(item[here]))) {
      AppendTrimmed(words, item, wordStart, here);
      wordStart = here;
    } else if (closes) {
      AppendTrimmed(words, item, wordStart, at + 1);
      wordStart = at + 1;
    }
  }
  AppendTrimmed(words, item, wordStart, item.size());
  return words;
}

QString OneLine(const QString& text) {
  QString line;
  bool isBlank = false;
  for (const QChar c : text) {
    const bool joins = IsBlank(c);
    if (!joins || !isBlank) line += joins ? QChar(u' ') : c;
    isBlank = joins;
  }
  return line.trimmed();
}

}  // namespace vorn::MimeCodec
