#pragma once

#include <QStringList>

#include "objects/window/editing_window.h"

namespace vorn {

class RulePage;

/// The window "rule": which messages are not received, told by their header.
class RuleWindow : public EditingWindow {
  Q_OBJECT

 public:
  RuleWindow(Context& context, QWidget* parent);

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;

 private:
  bool Save() override;
  QStringList StoredRules();

  RulePage* page_;
  QStringList shown_;  // the rules when the window came
};

}  // namespace vorn
