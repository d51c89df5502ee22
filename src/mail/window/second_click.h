#pragma once

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QTimer>

namespace vorn {

/// Who double-clicks a button that closes its window does not mean what lies behind the window:
/// swallows presses at the place of the pointer for as long as a double click may last.
class SecondClick : public QObject {
  Q_OBJECT

 public:
  SecondClick() : at_(QCursor::pos()) {
    qApp->installEventFilter(this);
    QTimer::singleShot(QApplication::doubleClickInterval(), this, &QObject::deleteLater);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick) {
      return false;
    }
    const QPoint distance =
        static_cast<const QMouseEvent*>(event)->globalPosition().toPoint() - at_;
    return distance.manhattanLength() < QApplication::startDragDistance();
  }

 private:
  QPoint at_;
};

}  // namespace vorn
