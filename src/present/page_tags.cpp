#include "present/page_tags.h"

#include <QStringList>

#include "mail/codec/code_page_932.h"

namespace vorn {

TagPattern CreateTagPattern(const QString& tag, const QVariant& key) {
  TagPattern pattern;
  pattern.tag = ToCodePage932(tag);
  pattern.upper = ToCodePage932(tag.toUpper());
  pattern.lower = ToCodePage932(tag.toLower());
  pattern.length = static_cast<qint32>(pattern.tag.size());
  pattern.key = key;
  return pattern;
}

bool MatchTagPattern(const QByteArray& text, const TagPattern& pattern, qsizetype position) {
  if (position < 0 || position + pattern.length > text.size()) return false;
  const char* bytes = text.constData() + position;
  for (qint32 i = 0; i < pattern.length; ++i) {
    if (bytes[i] != pattern.upper[i] && bytes[i] != pattern.lower[i]) return false;
  }
  return true;
}

QString ReadChildTags(const QByteArray& text, const PageTag& section, qsizetype& position,
                      qint32 limit) {
  QStringList found;
  for (qsizetype i = 0; i < section.children.size(); ++i) {
    if (!MatchTagPattern(text, section.children[i], position)) continue;
    found.append(QString::number(i));
    position += section.children[i].length;
    if (limit != 0 && found.size() > limit) break;
  }
  return found.join(QStringLiteral("\r\n"));
}

PageTagTable CreatePageTagTable() {
  const auto section = [](const char16_t* tag, QList<TagPattern> children = {}) {
    return PageTag{CreateTagPattern(QString::fromUtf16(tag), 0), std::move(children)};
  };
  const auto child = [](const char16_t* tag, const char16_t* key) {
    return CreateTagPattern(QString::fromUtf16(tag), QString::fromUtf16(key));
  };
  return {
      section(u"<+SUBJECT>"),
      section(u"<+DIALOG>", {child(u"<REPLAY>", u"REPLAY"), child(u"<REPLAYALL>", u"REPLAYALL"),
                             child(u"<FORWARD>", u"FORWARD")}),
      section(u"<+TIMESTAMP>", {child(u"<SHORT>", u"SHORT")}),
      // Blind copies are stored under the kind "BC".
      section(u"<+MAILADDRESS>",
              {child(u"<FROM>", u"FROM"), child(u"<TO>", u"TO"), child(u"<CC>", u"CC"),
               child(u"<BCC>", u"BC"), child(u"<SHORT>", u"")}),
      section(u"<+FLAG>", {child(u"<NEW>", u""), child(u"<CLIP>", u""), child(u"<PRIORITY>", u""),
                           child(u"<STATE>", u"")}),
      section(u"<+SIZE>"), section(u"<+TEXT>"),
      section(u"<+FOLDER>", {child(u"<NAME>", u"NAME"), child(u"<TOOLTIPTEXT>", u"TOOLTIPTEXT")}),
      section(u"<+MAIL>")};
}

}  // namespace vorn
