#include "objects/object_loader.h"

#include "objects/any_object.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"

namespace vorn {

DiskPtr LoadObject(Context& context, const SerialId& serialId) {
  if (DiskPtr loaded = context.Objects.Find(serialId)) return loaded;
  const OpenedDatabase opened(context, DatabaseKind::Profile);
  if (!opened) return nullptr;
  auto object = std::make_shared<Disk>(serialId);
  const bool exists = object->DatabaseToDisk(context.Data) && object->Size() > 0;
  if (!exists) return nullptr;
  context.Objects.Add(object);
  return object;
}

void ReadAnew(Context& context, const SerialId& serialId) {
  Disk stored(serialId);
  const OpenedDatabase profile(context, DatabaseKind::Profile);
  const bool isRead = profile && stored.DatabaseToDisk(context.Data) && stored.Size() > 0;
  if (isRead) TakeOver(context, stored);
}

void TakeOver(Context& context, const Disk& stored) {
  DiskPtr loaded = context.Objects.Find(stored.Serial());
  if (loaded == nullptr) {
    loaded = std::make_shared<Disk>(stored.Serial());
    context.Objects.Add(loaded);
  }
  Disk kept;
  for (const QString& key : ProfileBag::SessionKeys()) {
    if (const QVariant value = loaded->Get(key); value.isValid()) kept.Let(key, value);
  }
  loaded->Init();
  for (const Disk* source : {&stored, static_cast<const Disk*>(&kept)}) {
    for (qint32 i = 1; i <= source->Size(); ++i) {
      loaded->Let(source->NameAt(i), source->Get(source->NameAt(i)));
    }
  }
}

DiskPtr FindObjectByName(const Context& context, const QString& type, const QString& name) {
  for (const DiskPtr& object : context.Objects) {
    if (AnyObject(*object).Is(type) && AnyObject(*object).Name() == name) return object;
  }
  return nullptr;
}

}  // namespace vorn
