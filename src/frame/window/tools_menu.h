#pragma once

#include <QMenu>

namespace vorn {

class CheckPlan;

/// The entries of the Tools menu by their indexes.
enum ToolsEntry { kToolsReceive = 0, kToolsCancel, kToolsRules, kToolsSettings, kToolsVersion };

/// The menu "menuTools".
class ToolsMenu : public QMenu {
  Q_OBJECT

 public:
  /// There is something to cancel while `plan` has work.
  ToolsMenu(CheckPlan& plan, QWidget* parent);

  QAction* Version() const { return version_; }

 Q_SIGNALS:
  void Clicked(int index);

 private:
  QAction* Add(ToolsEntry entry, const QString& text);

  QAction* version_ = nullptr;
};

}  // namespace vorn
