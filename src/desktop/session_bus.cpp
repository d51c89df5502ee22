#include "desktop/session_bus.h"

#include <QFileInfo>

namespace vorn {

bool HasSessionBus() {
  return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
         QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

}  // namespace vorn
