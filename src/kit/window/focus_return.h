#pragma once

#include <QApplication>
#include <QEvent>
#include <QList>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace vorn {

/// Gives the keyboard to the window that had it before when one that has it closes and the window
/// system gives it to none: some window managers lose it when a question and the window that it
/// was about close at once. Whoever went to another program meanwhile is left there. For the
/// application.
class FocusReturn : public QObject {
 public:
  FocusReturn() {
    timer_.setSingleShot(true);
    timer_.setInterval(kGraceMs);
    connect(&timer_, &QTimer::timeout, this, &FocusReturn::Return);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (!watched->isWidgetType()) return false;
    auto* window = static_cast<QWidget*>(watched);
    if (!window->isWindow() || window->windowType() == Qt::Popup) return false;
    if (event->type() == QEvent::WindowActivate) {
      former_.removeAll(window);
      former_.removeAll(nullptr);
      former_.append(window);
      isElsewhere_ = false;
    } else if (event->type() == QEvent::WindowDeactivate) {
      isElsewhere_ = !window->isHidden();  // it is hidden before it goes
    } else if (event->type() == QEvent::Hide) {
      const bool hadIt = !isElsewhere_ && !former_.isEmpty() && former_.last() == window;
      if (hadIt || timer_.isActive()) timer_.start();
    }
    return false;
  }

 private:
  // In which a window manager gives the keyboard on by itself.
  static constexpr int kGraceMs = 250;

  void Return() {
    if (QApplication::activeWindow() != nullptr) return;
    if (QWidget* modal = QApplication::activeModalWidget()) return modal->activateWindow();
    for (auto window = former_.crbegin(); window != former_.crend(); ++window) {
      if (*window == nullptr || !(*window)->isVisible() || (*window)->isMinimized()) continue;
      return (*window)->activateWindow();
    }
  }

  QList<QPointer<QWidget>> former_;  // the one that had it last at the end
  bool isElsewhere_ = false;         // it went while its window was still there
  QTimer timer_;
};

}  // namespace vorn
