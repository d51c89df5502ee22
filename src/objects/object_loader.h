#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// The object with that serial identifier, loaded from the profile's database into the collection
/// when it is not there yet; null when it does not exist. Leaves no database open.
DiskPtr LoadObject(Context& context, const SerialId& serialId);

/// Loads it as it is stored now, over what is loaded: another program may have changed it. What is
/// not stored, or cannot be read, stays as it is.
void ReadAnew(Context& context, const SerialId& serialId);
/// Gives the loaded object, made when there is none, the values of that bag, keeping what only the
/// running program knows (`ProfileBag::SessionKeys`).
void TakeOver(Context& context, const Disk& stored);

/// The loaded object of a type with that exact name, or null.
DiskPtr FindObjectByName(const Context& context, const QString& type, const QString& name);

}  // namespace vorn
