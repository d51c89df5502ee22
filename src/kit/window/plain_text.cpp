#include "kit/window/plain_text.h"

#include <QLabel>

#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kMostInToolTip = 400;

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

QString ShownToolTip(const QString& text) {
  if (text.isEmpty()) return {};
  return QStringLiteral("<qt>") + ShownText(text, kMostInToolTip).toHtmlEscaped() +
         QStringLiteral("</qt>");
}

QLabel* PlainLabel(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  return label;
}

QMessageBox::StandardButton ShowBox(QWidget* parent, QMessageBox::Icon icon, const QString& text,
                                    QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton standard,
                                    QMessageBox::StandardButton escape) {
  QMessageBox box(icon, kApplicationTitle, ShownText(text), buttons, parent);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(standard);
  if (escape != QMessageBox::NoButton) box.setEscapeButton(escape);
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace vorn
