#pragma once

#include "storage/bags/disk.h"

namespace vorn {

/// The object of a type (`object_type`) that is marked as the default one, of several the one that
/// was saved last; null when there is none.
DiskPtr DefaultObject(const DiskCollection& objects, const QString& type);

}  // namespace vorn
