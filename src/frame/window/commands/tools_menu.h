#pragma once

#include <QMenu>

namespace vorn {

class CheckPlan;

/// The entries of the Tools menu.
enum class ToolsEntry { Receive, Cancel, Rules, Settings, Version };

/// The menu "menuTools".
class ToolsMenu : public QMenu {
  Q_OBJECT

 public:
  /// There is something to cancel while `plan` has work.
  ToolsMenu(CheckPlan& plan, QWidget* parent);

  QAction* Version() const { return version_; }

 Q_SIGNALS:
  void Clicked(ToolsEntry entry);

 private:
  QAction* Add(ToolsEntry entry, const QString& text);

  QAction* version_ = nullptr;
};

}  // namespace vorn
