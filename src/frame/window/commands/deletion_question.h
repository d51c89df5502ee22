#pragma once

#include <QString>

#include "storage/context.h"

class QWidget;

namespace vorn {

/// Asks before `window` whether an object is to be deleted, with what else that touches. `name` is
/// what the user calls it. What cannot be deleted is not asked about: the window of the object
/// tells why.
bool ConfirmDeletion(Context& context, QWidget& window, const SerialId& key, const QString& name);

}  // namespace vorn
