#include "objects/default_object.h"

#include "objects/any_object.h"

namespace vorn {

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
