#pragma once

#include "objects/window/editing_window.h"

namespace vorn {

/// The settings window "logo": how pages look, when mail is checked, how messages are written.
class SettingsWindow : public EditingWindow {
  Q_OBJECT

 public:
  explicit SettingsWindow(Context& context, QWidget* parent = nullptr);

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;

 protected:
  bool Save() override;
};

}  // namespace vorn
