#pragma once

#include <QEvent>
#include <QScreen>
#include <QWidget>

namespace vorn {

/// Makes a window that comes up larger than its screen, as on a small one with large letters, as
/// small as the screen is. For the application.
class ScreenFit : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Show || !watched->isWidgetType()) return false;
    auto* window = static_cast<QWidget*>(watched);
    const bool isOwn = window->isWindow() && window->windowType() != Qt::Popup &&
                       window->windowType() != Qt::ToolTip && !window->isMaximized() &&
                       !window->isFullScreen();
    if (!isOwn) return false;
    const QSize room = window->screen()->availableSize() - QSize(kFrame, kTitle);
    if (window->width() > room.width() || window->height() > room.height()) {
      window->resize(window->size().boundedTo(room));
    }
    return false;
  }

 private:
  // What the window system draws around it.
  static constexpr int kFrame = 10;
  static constexpr int kTitle = 40;
};

}  // namespace vorn
