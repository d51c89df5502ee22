#include "transfer/current_stop_rules.h"

#include "objects/object_loader.h"
#include "objects/object_types.h"

namespace vorn {

const ReceiveStopRules& CurrentStopRules::Get() {
  const DiskPtr object = LoadObject(context_, fixed_serial::kRules);
  const QString text = object != nullptr ? object->Text(u"ReceiveStop") : QString();
  if (!rules_ || text != text_) {
    text_ = text;
    rules_.emplace(text);
  }
  return *rules_;
}

bool CurrentStopRules::DeleteOnServer() const {
  return LoadObject(context_, fixed_serial::kRules)->Flag(u"ReceiveStopDelete");
}

}  // namespace vorn
