#pragma once

#include <QMessageBox>
#include <QString>

#include "storage/base/shown_text.h"

class QLabel;

namespace vorn {

/// How many characters of a subject or a name a title or a line shows.
inline constexpr qsizetype kMostInTitle = 200;

/// `ShownText` for a tooltip, which the toolkit would otherwise take for HTML where it looks like
/// it.
QString ShownToolTip(const QString& text);

/// A label that never takes its text for HTML.
QLabel* PlainLabel(const QString& text = {}, QWidget* parent = nullptr);

/// A message box with the program's title that shows its text as `ShownText`. Escape means
/// `escape`, or what the toolkit finds to be the cancelling button. Returns the button.
QMessageBox::StandardButton ShowBox(QWidget* parent, QMessageBox::Icon icon, const QString& text,
                                    QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                    QMessageBox::StandardButton standard = QMessageBox::NoButton,
                                    QMessageBox::StandardButton escape = QMessageBox::NoButton);

}  // namespace vorn
