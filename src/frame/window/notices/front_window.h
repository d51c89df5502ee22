#pragma once

#include <QApplication>
#include <QWidget>

namespace vorn {

/// The window that a question may stand over: the active one, or `main`. An open list is none,
/// since it goes of itself and takes along what stands over it.
inline QWidget* FrontWindow(QWidget& main) {
  QWidget* active = QApplication::activeWindow();
  return active == nullptr || active->windowType() == Qt::Popup ? &main : active;
}

/// Shows a window before all others, with the keyboard as far as the window system lets it.
inline void BringForward(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.raise();
  window.activateWindow();
}

}  // namespace vorn
