#include "storage/base/shown_text.h"

#include <QList>
#include <algorithm>
#include <iterator>
#include <limits>

#include "storage/ui.h"

namespace vorn {
namespace {

bool TurnsDirection(char32_t c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

bool IsVariationSelector(char32_t c) {
  return (c >= 0xFE00 && c <= 0xFE0F) || (c >= 0xE0100 && c <= 0xE01EF);
}

bool IsJoiner(char32_t c) {
  return c == 0x200C || c == 0x200D;
}

// Emoji, and letters of scripts that are joined: not those that names of files imitate.
bool IsJoined(char32_t c) {
  static constexpr QChar::Script kApart[] = {
      QChar::Script_Common,   QChar::Script_Latin,    QChar::Script_Greek,
      QChar::Script_Cyrillic, QChar::Script_Han,      QChar::Script_Hiragana,
      QChar::Script_Katakana, QChar::Script_Hangul,   QChar::Script_Bopomofo,
      QChar::Script_Armenian, QChar::Script_Georgian, QChar::Script_Hebrew};
  if (c < 0x80) return false;
  const QChar::Category category = QChar::category(c);
  if (IsVariationSelector(c) || category == QChar::Symbol_Other ||
      category == QChar::Symbol_Modifier) {
    return true;
  }
  return (QChar::isLetter(c) || QChar::isMark(c)) &&
         std::find(std::begin(kApart), std::end(kApart), QChar::script(c)) == std::end(kApart);
}

// What a variation selector can choose a form of: signs, digits of key caps, ideographs.
bool HasForms(char32_t c) {
  if (c < 0x80) return (c >= '0' && c <= '9') || c == '#' || c == '*';
  return QChar::isPrint(c) && !QChar::isSpace(c) && QChar::category(c) != QChar::Other_Format &&
         QChar::script(c) != QChar::Script_Latin && !IsVariationSelector(c);
}

// Nothing is drawn for it, wherever it stands. Signs of Arabic numbers are of the same category.
bool IsInvisible(char32_t c) {
  static constexpr char32_t kFillers[] = {0x034F, 0x115F, 0x1160, 0x17B4,
                                          0x17B5, 0x2800, 0x3164, 0xFFA0};
  if (std::find(std::begin(kFillers), std::end(kFillers), c) != std::end(kFillers)) return true;
  if (c >= 0xE0000 && c <= 0xE0FFF) return true;
  const bool isSign = c >= 0x0600 && c <= 0x08FF;
  return QChar::category(c) == QChar::Other_Format && !isSign;
}

bool IsHidden(char32_t before, char32_t c, char32_t after) {
  if (IsVariationSelector(c)) return !HasForms(before);
  if (IsJoiner(c)) return !IsJoined(before) || !IsJoined(after);
  return c >= 0xAD && IsInvisible(c);
}

QString SignOf(char32_t c) {
  constexpr char16_t kControlPictures = 0x2400;
  if (c < 0x20) return QString(QChar(char16_t(kControlPictures + c)));
  if (c == 0x7F) return QString(QChar(char16_t(0x2421)));
  return QStringLiteral("[U+%1]").arg(uint(c), 4, 16, QLatin1Char('0')).toUpper();
}

}  // namespace

QString ShownText(const QString& text, qsizetype most) {
  QString lines = text;
  lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  const QList<uint> characters = lines.toUcs4();
  QString shown;
  for (qsizetype i = 0; i < characters.size(); ++i) {
    if (shown.size() >= most) return shown + u'…';
    const char32_t c = characters[i];
    const bool isControl = QChar::category(c) == QChar::Other_Control && c != '\n' && c != '\t';
    const bool isHidden = IsHidden(characters.value(i - 1), c, characters.value(i + 1));
    if (isControl || TurnsDirection(c) || isHidden) {
      shown += SignOf(c);
    } else {
      shown.append(QStringView(QChar::fromUcs4(c)));
    }
  }
  return shown;
}

bool HasControlCharacter(const QString& text) {
  return std::any_of(text.begin(), text.end(),
                     [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; });
}

bool HasVisible(const QString& text) {
  constexpr char32_t kPlaceholder = 0xFFFC;  // of an object
  const QList<uint> characters = text.toUcs4();
  return std::any_of(characters.begin(), characters.end(), [](char32_t c) {
    const QChar::Category category = QChar::category(c);
    const bool isDrawn = QChar::isLetterOrNumber(c) || QChar::isPunct(c) || QChar::isSymbol(c) ||
                         category == QChar::Other_PrivateUse;
    return isDrawn && c != kPlaceholder && (c < 0xAD || !IsInvisible(c));
  });
}

QString ShownFileName(const QString& name, qsizetype most) {
  const QString line = ShownInLine(name).simplified();
  if (!HasVisible(line)) return Ui::tr("（名前なし）");
  if (line.size() <= most) return line;
  qsizetype begin = most - 1 - most * 2 / 5;
  qsizetype end = most * 2 / 5;
  if (line[begin].isLowSurrogate()) --begin;  // not through a letter
  if (line[line.size() - end].isLowSurrogate()) --end;
  return line.first(begin) + u'…' + line.last(end);
}

QString WithoutHidden(const QString& text) {
  if (std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0xAD; })) {
    return text;
  }
  const QList<uint> characters = text.toUcs4();
  QString seen;
  for (qsizetype i = 0; i < characters.size(); ++i) {
    const char32_t c = characters[i];
    if (TurnsDirection(c) || !IsHidden(characters.value(i - 1), c, characters.value(i + 1))) {
      seen.append(QStringView(QChar::fromUcs4(c)));
    }
  }
  return seen;
}

QString WithoutDirectionMarks(const QString& text) {
  QString plain = text;
  plain.removeIf([](QChar c) { return TurnsDirection(c.unicode()); });
  return plain;
}

QString IsolatedAddress(const QString& address) {
  const QChar ltr(0x2066);
  const QChar own(0x2068);
  const QChar end(0x2069);
  const auto runsBack = [](char32_t c) {
    const QChar::Direction direction = QChar::direction(c);
    return direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN;
  };
  const QList<uint> letters = address.toUcs4();
  if (std::none_of(letters.begin(), letters.end(), runsBack)) return address;
  const qsizetype bracket = address.lastIndexOf(QStringLiteral(" <"));
  if (bracket > 0 && address.endsWith(u'>')) {
    return own + address.first(bracket) + end + QStringLiteral(" <") + ltr +
           address.sliced(bracket + 2).chopped(1) + end + u'>';
  }
  return (address.contains(u'@') ? ltr : own) + address + end;
}

QString ShownInLine(const QString& text) {
  QString line = ShownText(text, std::numeric_limits<qsizetype>::max());
  return line.replace(u'\n', u' ').replace(u'\t', u' ');
}

}  // namespace vorn
