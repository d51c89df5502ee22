#include "frame/end_signals.h"

namespace vorn {

// The system closes the windows instead.
EndSignals::EndSignals(QObject* parent) : QObject(parent) {}

}  // namespace vorn
