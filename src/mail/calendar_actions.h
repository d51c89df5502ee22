#pragma once

#include <QString>

namespace vorn {

/// Whether an appointment in iCalendar form (RFC 5545) starts a program or names a file of the
/// computer.
bool StartsPrograms(const QString& calendar);

}  // namespace vorn
