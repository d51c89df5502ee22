#pragma once

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QTimer>

namespace vorn {

/// Who double-clicks a button means it once, and not what stands in its place afterwards: swallows
/// presses at the place of the pointer for as long as a double click may last, or `times` as long.
class SecondClick : public QObject {
  Q_OBJECT

 public:
  explicit SecondClick(int times = 1) : at_(QCursor::pos()) {
    qApp->installEventFilter(this);
    QTimer::singleShot(times * QApplication::doubleClickInterval(), this, &QObject::deleteLater);
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
