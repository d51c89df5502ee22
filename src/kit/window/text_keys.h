#pragma once

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace vorn {

/// Keys in boxes of text that the toolkit takes otherwise than a user means them. Alt with a letter
/// that stands for no command writes nothing, at the end of an address for instance (AltGr comes
/// with Ctrl, and commands get their keys before). Ctrl+Y does again what was undone. For the
/// application.
class TextKeys : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || !IsText(watched)) return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->modifiers() == Qt::ControlModifier && key->key() == Qt::Key_Y) {
      return QMetaObject::invokeMethod(watched, "redo");
    }
    return (key->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::AltModifier &&
           !key->text().isEmpty() && key->text().at(0).isPrint();
  }

 private:
  static bool IsText(QObject* watched) {
    return qobject_cast<QLineEdit*>(watched) != nullptr ||
           qobject_cast<QPlainTextEdit*>(watched) != nullptr ||
           qobject_cast<QTextEdit*>(watched) != nullptr;
  }
};

}  // namespace vorn
