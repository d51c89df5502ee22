#include "mail/window/fields/focused_box.h"

#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTimer>

namespace vorn {

void InFocusedBox(QMainWindow& window, const char* slot) {
  QWidget* box = window.focusWidget();
  // Chosen by keys: the menu bar gives the keyboard back once this is done.
  if (box == window.menuBar()) {
    QTimer::singleShot(0, &window, [&window, slot] {
      if (window.focusWidget() != window.menuBar()) InFocusedBox(window, slot);
    });
    return;
  }
  if (qobject_cast<QLineEdit*>(box) != nullptr || qobject_cast<QPlainTextEdit*>(box) != nullptr) {
    QMetaObject::invokeMethod(box, slot);
  }
}

void DeleteInFocusedBox(const QMainWindow& window) {
  if (auto* line = qobject_cast<QLineEdit*>(window.focusWidget()); line != nullptr) {
    if (!line->isReadOnly()) line->del();
  } else if (auto* text = qobject_cast<QPlainTextEdit*>(window.focusWidget()); text != nullptr) {
    if (!text->isReadOnly()) text->textCursor().deleteChar();
  }
}

}  // namespace vorn
