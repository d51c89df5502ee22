#pragma once

#include <QString>

#include "storage/message_state.h"

namespace vorn {

/// How urgent a message is, by the characters of the flag string.
enum class Priority { High = 1, Usual = 2, Low = 3 };
/// Usual where the string does not say.
Priority PriorityIn(const QString& flags);
QString SetPriority(const QString& flags, Priority priority);

/// The character at a position, or `fallback` when the string is shorter.
QString GetFlagChar(const QString& flags, FlagPosition position, const QString& fallback);

/// The flags with a position set. A shorter string is first padded with "0". An empty value changes
/// nothing; a number outside 0 to 9 and a text of several characters pad only.
QString SetFlagChar(const QString& flags, FlagPosition position, const QString& value);

}  // namespace vorn
