#pragma once

#include <QEvent>
#include <QScreen>
#include <QWidget>

namespace vorn {

/// Makes a window that comes up larger than its screen, as on a small one with large letters, as
/// small as the screen is, and one that is placed beyond its edge stand whole on it. For the
/// application.
class ScreenFit : public QObject {
 public:
  using QObject::QObject;

  /// What of a screen can be the inside of a window.
  static QRect Room(const QRect& screen) { return screen.adjusted(0, 0, -kFrame, -kTitle); }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Show || !watched->isWidgetType()) return false;
    auto* window = static_cast<QWidget*>(watched);
    const bool isOwn = window->isWindow() && window->windowType() != Qt::Popup &&
                       window->windowType() != Qt::ToolTip && !window->isMaximized() &&
                       !window->isFullScreen();
    if (!isOwn) return false;
    const QRect screen = window->screen()->availableGeometry();
    const QSize size = window->size().boundedTo(Room(screen).size());
    if (size != window->size()) window->resize(size);
    // Where it stood last may be beyond a screen that has become smaller.
    if (!window->testAttribute(Qt::WA_Moved)) return false;
    const QPoint most =
        screen.bottomRight() - QPoint(size.width() + kFrame, size.height() + kTitle);
    const QPoint place(qBound(screen.left(), window->x(), qMax(screen.left(), most.x())),
                       qBound(screen.top(), window->y(), qMax(screen.top(), most.y())));
    if (place != window->pos()) window->move(place);
    return false;
  }

 private:
  // What the window system draws around it.
  static constexpr int kFrame = 10;
  static constexpr int kTitle = 40;
};

}  // namespace vorn
