#include "objects/settings.h"

#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {

DiskPtr Settings(Context& context) {
  DiskPtr settings = LoadObject(context, fixed_serial::kSettings);
  return settings != nullptr ? settings : std::make_shared<Disk>(fixed_serial::kSettings);
}

QStringList DefaultTextTypes() {
  return {QStringLiteral("text/plain")};
}

QStringList TextTypes(Context& context) {
  return Settings(context)
      ->Text(u"TextMime", DefaultTextTypes().join(kLineBreak))
      .split(kLineBreak);
}

}  // namespace vorn
