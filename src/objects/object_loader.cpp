#include "objects/object_loader.h"

#include "objects/any_object.h"
#include "storage/databases.h"

namespace vorn {

DiskPtr LoadObject(Context& context, const QString& serialId) {
  if (DiskPtr loaded = context.Objects.Find(serialId)) return loaded;
  const OpenedDatabase opened(context, DatabaseKind::Profile);
  if (!opened) return nullptr;
  auto object = std::make_shared<Disk>(serialId);
  const bool exists = object->DatabaseToDisk(context.Data) && object->Size() > 0;
  if (!exists) return nullptr;
  context.Objects.Add(object);
  return object;
}

DiskPtr FindObjectByName(const Context& context, const QString& type, const QString& name) {
  for (const DiskPtr& object : context.Objects) {
    if (AnyObject(*object).Is(type) && AnyObject(*object).Name() == name) return object;
  }
  return nullptr;
}

}  // namespace vorn
