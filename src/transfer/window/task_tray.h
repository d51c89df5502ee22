#pragma once

#include <QMenu>
#include <QSystemTrayIcon>

namespace vorn {

/// The icon "tasktray" in the notification area, with the version window and the way out in the
/// menu of its right mouse button. It goes with its owner.
class TaskTray : public QObject {
  Q_OBJECT

 public:
  /// `version` and `exit` are the main window's own menu entries.
  TaskTray(const QIcon& icon, QAction* version, QAction* exit, QObject* parent);
  ~TaskTray() override;
  const QSystemTrayIcon& TrayIcon() const { return icon_; }
  void Hide();

 Q_SIGNALS:
  /// The icon was clicked.
  void Clicked();

 private:
  QMenu menuTasktray_;
  QSystemTrayIcon icon_;
};

}  // namespace vorn
