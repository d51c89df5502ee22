#pragma once

#include <QString>

#include "storage/bags/disk.h"

namespace vorn {

/// What `SelectObjects` demands of an object besides the filter.
enum SelectFlag { kSelectEnabled = 1, kSelectDefault = 2 };
Q_DECLARE_FLAGS(SelectFlags, SelectFlag)

/// The objects of a collection that match a filter, in collection order. The filter holds type
/// words in any arrangement ("account" CR LF "folder") and those of `object_filter`; an empty
/// filter passes every object that has a type. `owner` is the session bag.
DiskCollectionPtr SelectObjects(const DiskCollection& objects, const Disk& owner,
                                const QString& filter, SelectFlags flags = {});

/// The object of a type (`object_type`) that is marked as the default one, of several the one that
/// was saved last; null when there is none.
DiskPtr DefaultObject(const DiskCollection& objects, const QString& type);

}  // namespace vorn
