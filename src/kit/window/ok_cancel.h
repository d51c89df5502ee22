#pragma once

#include <QDialogButtonBox>
#include <optional>

namespace vorn {

/// The buttons of a window that asks: "OK" and the one that cancels, named "cmOk" and "cmCancel".
QDialogButtonBox* OkCancelBox();

/// Asks whether to save what was changed; nothing when the user goes back to it.
std::optional<bool> AskToSave(QWidget* parent);

}  // namespace vorn
