#include "mail/codec/html/style_filter.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <algorithm>

namespace vorn {
namespace {

// Whole families by how their names begin, and single properties.
constexpr QStringView kFamilies[] = {u"border",  u"font",    u"list-style", u"margin",
                                     u"outline", u"padding", u"text-"};

const QSet<QString>& Properties() {
  static const QSet<QString> names = {
      QStringLiteral("background"),     QStringLiteral("background-color"),
      QStringLiteral("box-sizing"),     QStringLiteral("caption-side"),
      QStringLiteral("clear"),          QStringLiteral("color"),
      QStringLiteral("direction"),      QStringLiteral("display"),
      QStringLiteral("empty-cells"),    QStringLiteral("float"),
      QStringLiteral("height"),         QStringLiteral("letter-spacing"),
      QStringLiteral("line-height"),    QStringLiteral("max-height"),
      QStringLiteral("max-width"),      QStringLiteral("min-height"),
      QStringLiteral("min-width"),      QStringLiteral("opacity"),
      QStringLiteral("overflow"),       QStringLiteral("overflow-wrap"),
      QStringLiteral("table-layout"),   QStringLiteral("unicode-bidi"),
      QStringLiteral("vertical-align"), QStringLiteral("visibility"),
      QStringLiteral("white-space"),    QStringLiteral("width"),
      QStringLiteral("word-break"),     QStringLiteral("word-spacing"),
      QStringLiteral("word-wrap")};
  return names;
}

// What may stand before a parenthesis; "url", "image-set", "expression", "var" and whatever comes
// later may not.
const QSet<QString>& Functions() {
  static const QSet<QString> names = {QStringLiteral("rgb"),
                                      QStringLiteral("rgba"),
                                      QStringLiteral("hsl"),
                                      QStringLiteral("hsla"),
                                      QStringLiteral("calc"),
                                      QStringLiteral("linear-gradient"),
                                      QStringLiteral("radial-gradient")};
  return names;
}

bool IsProperty(const QString& name) {
  // A name is written as it stands, so nothing may hide behind the beginning of one.
  const bool isName = std::all_of(name.begin(), name.end(),
                                  [](QChar c) { return (c >= u'a' && c <= u'z') || c == u'-'; });
  return Properties().contains(name) ||
         (isName && std::any_of(std::begin(kFamilies), std::end(kFamilies),
                                [&name](QStringView family) { return name.startsWith(family); }));
}

bool IsSafeValue(const QString& value) {
  static const QRegularExpression call(QStringLiteral("([A-Za-z0-9_-]*)\\s*\\("));
  const bool isOdd = std::any_of(value.begin(), value.end(), [](QChar c) {
    return QStringView(u"\\<>@{}&").contains(c) || c.category() == QChar::Other_Control;
  });
  if (isOdd || value.count(u'"') % 2 != 0 || value.count(u'\'') % 2 != 0) return false;
  for (auto match = call.globalMatch(value); match.hasNext();) {
    if (!Functions().contains(match.next().captured(1).toLower())) return false;
  }
  return true;
}

// A blank in the place of each: what stood on both sides of one would otherwise become a word that
// no parser has seen.
QString WithoutComments(const QString& text) {
  QString result;
  qsizetype at = 0;
  for (;;) {
    const qsizetype start = text.indexOf(u"/*", at);
    if (start < 0) return result += QStringView(text).sliced(at);
    result += QStringView(text).sliced(at, start - at);
    result += u' ';
    const qsizetype end = text.indexOf(u"*/", start + 2);
    if (end < 0) return result;
    at = end + 2;
  }
}

// Where the block that is open before `at` ends: the place of its brace, or the end of the text.
qsizetype EndOfBlock(const QString& text, qsizetype at) {
  for (int depth = 1; at < text.size(); ++at) {
    if (text[at] == u'{') ++depth;
    if (text[at] == u'}' && --depth == 0) return at;
  }
  return at;
}

QString Rules(const QString& sheet, bool insideMedia) {
  static const QRegularExpression plain(QStringLiteral("^[\\w\\s.,#>:+~*()-]+$"),
                                        QRegularExpression::UseUnicodePropertiesOption);
  QString result;
  for (qsizetype at = 0; at < sheet.size();) {
    const qsizetype open = sheet.indexOf(u'{', at);
    if (open < 0) break;
    // A statement such as "@import" ends before the next rule begins.
    const qsizetype statement = sheet.lastIndexOf(u';', open);
    const qsizetype start = std::max(at, statement + 1);
    const QString head = sheet.mid(start, open - start).trimmed();
    const qsizetype end = EndOfBlock(sheet, open + 1);
    const QString body = sheet.mid(open + 1, end - open - 1);
    at = end + 1;
    if (head.startsWith(u'@')) {
      const bool isMedia = head.startsWith(u"@media", Qt::CaseInsensitive) && !insideMedia;
      if (isMedia && plain.match(head.sliced(1)).hasMatch()) {
        result += head + u'{' + Rules(body, true) + u'}';
      }
    } else if (plain.match(head).hasMatch()) {
      result += head + u'{' + SafeDeclarations(body) + u'}';
    }
  }
  return result;
}

}  // namespace

QString SafeDeclarations(const QString& declarations) {
  static const QRegularExpression image(
      QStringLiteral("url\\(\\s*(?:\"[^\"]*\"|'[^']*'|[^)\"']*)\\s*\\)"),
      QRegularExpression::CaseInsensitiveOption);
  QStringList safe;
  for (const QString& declaration : WithoutComments(declarations).split(u';')) {
    const QString name = declaration.section(u':', 0, 0).trimmed().toLower();
    QString value = declaration.section(u':', 1).trimmed();
    // Its colour is what the text is seen on.
    if (name == u"background") value = value.remove(image).trimmed();
    if (IsProperty(name) && !value.isEmpty() && IsSafeValue(value)) {
      safe.append(name + u':' + value);
    }
  }
  return safe.join(u';');
}

QString SafeStyleSheet(const QString& sheet) {
  // The signs that hid a sheet from programs of long ago (CSS 2, section 4.4).
  const QString blank = QStringLiteral(" ");
  QString safe = Rules(WithoutComments(sheet)
                           .replace(QStringLiteral("<!--"), blank)
                           .replace(QStringLiteral("-->"), blank),
                       false);
  // No rule needs the sign that could end the element which the sheet stands in.
  return safe.contains(u'<') ? QString() : safe;
}

bool SetsColors(const QString& safe) {
  // "windowtext" is what the reader's scheme makes of it.
  static const QRegularExpression color(
      QStringLiteral(
          "(?:^|[;{])(?:color|background(?:-color)?):(?!(?:inherit|initial|unset|none|auto|"
          "transparent|currentcolor|windowtext)\\s*(?:!\\s*important\\s*)?(?:[;}]|$))"),
      QRegularExpression::CaseInsensitiveOption);
  return color.match(safe).hasMatch();
}

}  // namespace vorn
