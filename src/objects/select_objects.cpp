#include "objects/select_objects.h"

#include "objects/object_types.h"

namespace vorn {

bool IsFilledByHand(const Disk& object) {
  return object.Text(u"FormName") == object_type::kFolder &&
         object.Text(u"Draw").contains(u"static");
}

namespace {

bool PassesFilter(const Disk& object, const QString& type, const Disk& owner,
                  const QString& filter) {
  if (filter.isEmpty()) return true;
  if (type == object_type::kProfile) {
    return filter.contains(object_type::kProfile) ||
           (filter.contains(u"owner") && object.SerialID() == owner.SerialID());
  }
  if (filter.contains(type)) return true;
  if (type != object_type::kFolder) return false;
  return (filter.contains(u"static") && IsFilledByHand(object)) ||
         (filter.contains(u"active") && object.Text(u"Draw").contains(u"active"));
}

}  // namespace

DiskCollectionPtr SelectObjects(const DiskCollection& objects, const Disk& owner,
                                const QString& filter, int flags) {
  auto selected = std::make_shared<DiskCollection>();
  for (const DiskPtr& object : objects) {
    const QString type = object->Text(u"FormName");
    if (type.isEmpty() || !PassesFilter(*object, type, owner, filter)) continue;
    if ((flags & kSelectEnabled) != 0 && !object->Flag(u"Enabled")) continue;
    if ((flags & kSelectDefault) != 0 && !object->Flag(u"Default")) continue;
    selected->Add(object);
  }
  return selected;
}

}  // namespace vorn
