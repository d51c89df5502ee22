#include "transfer/rules/current_stop_rules.h"

#include "transfer/rules/rules_object.h"

namespace vorn {

const ReceiveStopRules& CurrentStopRules::Get() {
  const QString text = RulesObject(context_).Lines();
  if (!rules_ || text != text_) {
    text_ = text;
    rules_.emplace(text);
  }
  return *rules_;
}

bool CurrentStopRules::DeleteOnServer() const {
  return RulesObject(context_).DeletesOnServer();
}

}  // namespace vorn
