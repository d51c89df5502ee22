#pragma once

#include <QStringList>

#include "storage/context.h"

namespace vorn {

/// The addresses a user may want to write to, "name <address>" or the address alone, without
/// repetitions: the entries of the address books first, then the recipients of the messages sent
/// last, then the own accounts.
QStringList KnownAddresses(Context& context);

}  // namespace vorn
