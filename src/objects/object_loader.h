#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// The object with that serial identifier, loaded from the profile's database into the collection
/// when it is not there yet; null when it does not exist. Leaves no database open.
DiskPtr LoadObject(Context& context, const QString& serialId);

/// The loaded object of a type with that exact name, or null.
DiskPtr FindObjectByName(const Context& context, const QString& type, const QString& name);

}  // namespace vorn
