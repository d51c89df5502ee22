#include "kit/window/plain_text.h"

#include <QLabel>

#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kMostInToolTip = 400;

}  // namespace

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
  // A name in front in letters from right to left turns no sentence of the program's round.
  const QChar leftToRight(0x200E);
  const QString shown = ShownText(text);
  QMessageBox box(icon, kApplicationTitle, text.isRightToLeft() ? leftToRight + shown : shown,
                  buttons, parent);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(standard);
  if (escape != QMessageBox::NoButton) box.setEscapeButton(escape);
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace vorn
