#pragma once

#include <QComboBox>
#include <QKeyEvent>
#include <QWheelEvent>

namespace vorn {

/// The kind of an address row. Only who opens it changes it: letters are for the row's text, the
/// wheel is for the list, and Tab goes from text to text.
class KindBox : public QComboBox {
  Q_OBJECT

 public:
  KindBox() { setFocusPolicy(Qt::ClickFocus); }

 Q_SIGNALS:
  /// A text was typed that is no command of the box.
  void Typed(const QString& text);

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
  void keyPressEvent(QKeyEvent* event) override {
    const bool isText = !event->text().isEmpty() && event->text().at(0).isPrint() &&
                        event->key() != Qt::Key_Space &&
                        (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    isText ? Q_EMIT Typed(event->text()) : QComboBox::keyPressEvent(event);
  }
};

}  // namespace vorn
