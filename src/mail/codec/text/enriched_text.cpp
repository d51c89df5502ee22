#include "mail/codec/text/enriched_text.h"

namespace vorn {
namespace {

// Takes line breaks: one is a blank, of several all but one are breaks.
void TakeBreaks(const QString& text, qsizetype& at, QString& words) {
  qsizetype breaks = 0;
  for (; at < text.size() && (text[at] == u'\n' || text[at] == u'\r'); ++at) {
    breaks += text[at] == u'\n' ? 1 : 0;
  }
  if (breaks == 1 && at < text.size()) words += u' ';
  for (; breaks > 1; --breaks) words += QStringLiteral("\r\n");
}

}  // namespace

QString EnrichedToText(const QString& enriched) {
  const QString endOfParameter = QStringLiteral("</param>");
  QString words;
  for (qsizetype at = 0; at < enriched.size();) {
    const QStringView rest = QStringView(enriched).sliced(at);
    if (rest.front() == u'\r' || rest.front() == u'\n') {
      TakeBreaks(enriched, at, words);
    } else if (rest.startsWith(u"<<")) {
      words += u'<';
      at += 2;
    } else if (rest.front() == u'<') {
      const bool isParameter = rest.startsWith(u"<param>", Qt::CaseInsensitive);
      const qsizetype end =
          isParameter ? rest.indexOf(endOfParameter, 0, Qt::CaseInsensitive) : rest.indexOf(u'>');
      at = end < 0 ? enriched.size() : at + end + (isParameter ? endOfParameter.size() : 1);
      if (rest.startsWith(u"<nl>", Qt::CaseInsensitive)) words += QStringLiteral("\r\n");
    } else {
      words += enriched[at++];
    }
  }
  return words;
}

}  // namespace vorn
