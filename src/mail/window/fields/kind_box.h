#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>

namespace vorn {

/// The kind of an address row. Only who opens it changes it: letters are for the row's text, and
/// Tab goes from text to text. Escape closes its list and no more.
class KindBox : public QComboBox {
  Q_OBJECT

 public:
  KindBox() {
    setFocusPolicy(Qt::ClickFocus);
    connect(this, &QComboBox::activated, this, [this] {
      if (std::exchange(opened_, false)) Q_EMIT Chosen();
    });
  }

  void showPopup() override {
    opened_ = true;
    QComboBox::showPopup();
    // Escape is a key of the window too, which it would close.
    view()->installEventFilter(this);
    view()->parentWidget()->installEventFilter(this);
  }

  bool eventFilter(QObject*, QEvent* event) override {
    const bool isEscape = event->type() == QEvent::ShortcutOverride &&
                          static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (isEscape) event->accept();
    return isEscape;
  }

 Q_SIGNALS:
  /// A kind was taken from the open list.
  void Chosen();
  /// A text was typed that is no command of the box.
  void Typed(const QString& text);

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    opened_ = false;
    const bool isText = !event->text().isEmpty() && event->text().at(0).isPrint() &&
                        event->key() != Qt::Key_Space &&
                        (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    isText ? Q_EMIT Typed(event->text()) : QComboBox::keyPressEvent(event);
  }

 private:
  bool opened_ = false;  // the list, by the last key or click
};

}  // namespace vorn
