#pragma once

#include <QStringList>

#include "objects/window/editing_window.h"

namespace vorn {

/// The window "rule": which messages are not received, told by their header.
class RuleWindow : public EditingWindow {
  Q_OBJECT

 public:
  RuleWindow(Context& context, QWidget* parent);

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;

 private:
  bool Save() override;
  QStringList StoredRules();

  QStringList shown_;  // the rules when the window came
};

}  // namespace vorn
