#include "objects/select_objects.h"

#include "objects/any_object.h"
#include "objects/folder_object.h"
#include "objects/object_types.h"

namespace vorn {
namespace {

bool PassesFilter(const Disk& object, const QString& type, const Disk& owner,
                  const QString& filter) {
  if (filter.isEmpty()) return true;
  if (type == object_type::kProfile) {
    return filter.contains(object_type::kProfile) ||
           (filter.contains(object_filter::kOwner) && object.Serial() == owner.Serial());
  }
  if (filter.contains(type)) return true;
  if (type != object_type::kFolder) return false;
  return (filter.contains(object_filter::kInbox) && object.Serial() == fixed_serial::kInbox) ||
         (filter.contains(object_filter::kByHand) && FolderObject(object).IsFilledByHand()) ||
         (filter.contains(object_filter::kByConditions) &&
          AnyObject(object).Draw().contains(object_filter::kByConditions));
}

}  // namespace

DiskCollectionPtr SelectObjects(const DiskCollection& objects, const Disk& owner,
                                const QString& filter, SelectFlags flags) {
  auto selected = std::make_shared<DiskCollection>();
  for (const DiskPtr& object : objects) {
    const QString type = AnyObject(*object).Type();
    if (type.isEmpty() || !PassesFilter(*object, type, owner, filter)) continue;
    if (flags.testFlag(kSelectEnabled) && !AnyObject(*object).IsEnabled()) continue;
    if (flags.testFlag(kSelectDefault) && !AnyObject(*object).IsDefault()) continue;
    selected->Add(object);
  }
  return selected;
}

DiskPtr DefaultObject(const DiskCollection& objects, const QString& type) {
  DiskPtr last;
  for (const DiskPtr& object : objects) {
    const AnyObject any(*object);
    if (!any.Is(type) || !any.IsDefault()) continue;
    if (last == nullptr || any.Saved() > AnyObject(*last).Saved()) last = object;
  }
  return last;
}

}  // namespace vorn
