#include "frame/other_objects.h"

#include <utility>

#include "objects/account.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "storage/databases.h"
#include "storage/session/change_mark.h"

namespace vorn {

SerialIds OtherObjects::TakeNew() {
  SerialIds taken;
  if (!rest_.hasExpired()) return taken;
  rest_.setRemainingTime(restMs_);
  if (!HasChanged()) return taken;
  DiskCollection stored;
  if (!LoadObjects(context_, DatabaseKind::Profile, stored)) {
    mark_.clear();  // looked at once more
    return taken;
  }
  for (const DiskPtr& object : stored) {
    if (Take(object)) taken.append(object->Serial());
  }
  return taken;
}

// At first, too: something may have been stored since the profile was loaded.
bool OtherObjects::HasChanged() {
  const OpenedDatabase profile(context_, DatabaseKind::Profile);
  if (!profile) return false;
  const QString mark = OthersMark(context_.Data);
  return mark != std::exchange(mark_, mark);
}

// What stands in no tree is read by those who need it.
bool OtherObjects::Take(const DiskPtr& stored) {
  const AnyObject object(*stored);
  if (object.Type().isEmpty() || object.Is(object_type::kProfile)) return false;
  const DiskPtr loaded = context_.Objects.Find(stored->Serial());
  if (loaded == nullptr) {
    context_.Objects.Add(stored);
    return true;
  }
  const AnyObject known(*loaded);
  if (known.IsMarked() || object.Saved() == known.Saved()) return false;
  const QStringList secrets = Account::SecretKeys();
  for (qint32 i = 1; i <= stored->Size(); ++i) {
    const QString& key = stored->NameAt(i);
    // A password that is not stored is known all the same.
    const bool isForgotten =
        secrets.contains(key, Qt::CaseInsensitive) && stored->Text(key).isEmpty();
    if (!isForgotten) loaded->Let(key, stored->Get(key));
  }
  return true;
}

}  // namespace vorn
