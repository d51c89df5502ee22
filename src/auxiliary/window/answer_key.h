#pragma once

#include <QString>

namespace vorn {

/// Where the session bag holds what a window was asked for, once it has closed.
inline const QString kAnswer = QStringLiteral("status");

}  // namespace vorn
