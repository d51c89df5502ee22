#include "mail/codec/text/line_wrapping.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>

#include <QStringList>
#include <algorithm>
#include <memory>

#include "mail/codec/text/text_links.h"

namespace vorn {
namespace {

constexpr char32_t kFirstAfterLatin = 0x250;
constexpr qsizetype kLongestLine = 20000;  // what is longer is no text

int ColumnsOfLetter(char32_t letter) {
  const auto code = static_cast<UChar32>(letter);
  const int8_t type = u_charType(code);
  if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR) return 0;
  const int width = u_getIntPropertyValue(code, UCHAR_EAST_ASIAN_WIDTH);
  const bool isWide = width == U_EA_WIDE || width == U_EA_FULLWIDTH ||
                      (width == U_EA_AMBIGUOUS && letter >= kFirstAfterLatin);
  return isWide ? 2 : 1;
}

// Where the line may be broken, its end included.
QList<qsizetype> Breaks(const QString& line) {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> iterator(
      icu::BreakIterator::createLineInstance(icu::Locale::getJapanese(), error));
  if (U_FAILURE(error)) return {line.size()};
  const icu::UnicodeString text(false, reinterpret_cast<const char16_t*>(line.utf16()),
                                static_cast<int32_t>(line.size()));
  iterator->setText(text);
  const QList<TextLink> links = FindTextLinks(line);
  QList<qsizetype> breaks;
  for (int32_t at = iterator->next(); at != icu::BreakIterator::DONE; at = iterator->next()) {
    const bool isInLink = std::any_of(links.begin(), links.end(), [at](const TextLink& link) {
      return at > link.first && at < link.first + link.length;
    });
    const bool quotes = at < line.size() && line[at] == u'>';  // as the next line
    if (!isInLink && !quotes) breaks.append(at);
  }
  return breaks;
}

QString TrimmedEnd(QStringView text) {
  while (!text.isEmpty() && text.back().isSpace()) text.chop(1);
  return text.toString();
}

QStringList Wrapped(const QString& line, int most) {
  QStringList lines;
  qsizetype first = 0;
  qsizetype last = 0;
  for (const qsizetype at : Breaks(line)) {
    const QString upToHere = TrimmedEnd(QStringView(line).sliced(first, at - first));
    if (last > first && ColumnsOf(upToHere) > most) {
      lines.append(TrimmedEnd(QStringView(line).sliced(first, last - first)));
      first = last;
    }
    last = at;
  }
  lines.append(line.sliced(first));
  return lines;
}

}  // namespace

int ColumnsOf(QStringView text) {
  int columns = 0;
  for (const char32_t letter : text.toUcs4()) columns += ColumnsOfLetter(letter);
  return columns;
}

QString WrapLines(const QString& text, int most, const QString& quoteMark) {
  QStringList lines;
  for (const QString& line : text.split(u'\n')) {
    const bool isQuoted = line.startsWith(u'>') ||
                          (!quoteMark.trimmed().isEmpty() && line.startsWith(quoteMark.trimmed()));
    if (isQuoted || line.size() > kLongestLine || ColumnsOf(line) <= most) {
      lines.append(line);
    } else {
      lines.append(Wrapped(line, most));
    }
  }
  return lines.join(u'\n');
}

}  // namespace vorn
