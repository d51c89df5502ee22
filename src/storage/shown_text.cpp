#include "storage/shown_text.h"

#include <limits>

namespace vorn {
namespace {

bool TurnsDirection(char16_t c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

QString SignOf(char16_t c) {
  constexpr char16_t kControlPictures = 0x2400;
  if (c < 0x20) return QString(QChar(char16_t(kControlPictures + c)));
  if (c == 0x7F) return QString(QChar(char16_t(0x2421)));
  return QStringLiteral("[U+%1]").arg(c, 4, 16, QLatin1Char('0')).toUpper();
}

}  // namespace

QString ShownText(const QString& text, qsizetype most) {
  QString lines = text;
  lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  QString shown;
  for (const QChar character : std::as_const(lines)) {
    if (shown.size() >= most) return shown + u'…';
    const char16_t c = character.unicode();
    const bool isControl = character.category() == QChar::Other_Control && c != '\n' && c != '\t';
    shown += isControl || TurnsDirection(c) ? SignOf(c) : QString(character);
  }
  return shown;
}

QString ShownInLine(const QString& text) {
  QString line = ShownText(text, std::numeric_limits<qsizetype>::max());
  return line.replace(u'\n', u' ').replace(u'\t', u' ');
}

}  // namespace vorn
