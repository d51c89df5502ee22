#pragma once

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

namespace vorn {

/// Who double-clicks a button means it once, and not what stands in its place afterwards: swallows
/// presses at the place of the pointer.
class SecondClick : public QObject {
  Q_OBJECT

 public:
  enum class Lasts {
    ADoubleClick,  ///< for as long as one may last
    UntilMoved,    ///< until the pointer has left the place, or something was typed or scrolled
  };

  explicit SecondClick(Lasts lasts = Lasts::ADoubleClick) : at_(QCursor::pos()), lasts_(lasts) {
    qApp->installEventFilter(this);
    if (lasts_ == Lasts::ADoubleClick) {
      QTimer::singleShot(QApplication::doubleClickInterval(), this, &QObject::deleteLater);
    }
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    switch (event->type()) {
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonDblClick:
        if (IsHere(static_cast<const QMouseEvent*>(event)->globalPosition().toPoint())) return true;
        break;
      case QEvent::KeyPress:
        if (!IsNewKey(*static_cast<const QKeyEvent*>(event))) return false;
        break;
      case QEvent::InputMethod:
      case QEvent::Wheel:
        break;
      case QEvent::MouseMove:
      case QEvent::HoverMove:
      case QEvent::Enter:
      case QEvent::Leave:
        if (IsHere(QCursor::pos())) return false;
        break;
      default:
        return false;
    }
    if (lasts_ == Lasts::UntilMoved) {
      qApp->removeEventFilter(this);
      deleteLater();
    }
    return false;
  }

 private:
  bool IsHere(QPoint place) const {
    return (place - at_).manhattanLength() < QApplication::startDragDistance();
  }
  // Rather than the one that is still held down from the command.
  static bool IsNewKey(const QKeyEvent& key) {
    const bool isModifier = key.key() == Qt::Key_Control || key.key() == Qt::Key_Shift ||
                            key.key() == Qt::Key_Alt || key.key() == Qt::Key_Meta;
    return !isModifier && !key.isAutoRepeat();
  }

  QPoint at_;
  Lasts lasts_;
};

}  // namespace vorn
