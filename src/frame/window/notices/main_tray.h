#pragma once

#include <memory>

class QAction;
class QWidget;

namespace vorn {

class TaskTray;

/// The main window's icon in the notification area, as long as the settings want one. A click
/// brings the window to the front.
class MainTray {
 public:
  explicit MainTray(QWidget& window);
  ~MainTray();

  /// The entries of its menu, which the main window's menus share.
  void ShareEntries(QAction* version, QAction* exit);
  void Show(bool shown);
  /// The window closes.
  void Leave();

 private:
  QWidget& window_;
  QAction* version_ = nullptr;
  QAction* exit_ = nullptr;
  std::unique_ptr<TaskTray> tasktray_;
};

}  // namespace vorn
