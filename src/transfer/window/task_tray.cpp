#include "transfer/window/task_tray.h"

#include "storage/ui.h"

namespace vorn {

TaskTray::TaskTray(const QIcon& icon, QAction* version, QAction* exit, QObject* parent)
    : QObject(parent), icon_(icon) {
  setObjectName(QStringLiteral("tasktray"));
  menuTasktray_.setObjectName(QStringLiteral("menuTasktray"));
  // The entries are the main window's, so that both menus do the same.
  menuTasktray_.addAction(version);
  menuTasktray_.addSeparator();
  menuTasktray_.addAction(exit);
  icon_.setToolTip(kApplicationTitle);
  icon_.setContextMenu(&menuTasktray_);
  connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason how) {
    if (how == QSystemTrayIcon::Trigger || how == QSystemTrayIcon::DoubleClick) Q_EMIT Clicked();
  });
  icon_.show();
}

TaskTray::~TaskTray() {
  Hide();
}

void TaskTray::Hide() {
  icon_.hide();
}

}  // namespace vorn
