#pragma once

#include <optional>

#include "storage/context.h"
#include "transfer/rules/receive_stop_rules.h"

namespace vorn {

/// The receive-stop rules as they are now: the user may change them while a session runs.
class CurrentStopRules {
 public:
  explicit CurrentStopRules(Context& context) : context_(context) {}

  const ReceiveStopRules& Get();
  /// Whether what they stop is deleted on the server.
  bool DeleteOnServer() const;

 private:
  Context& context_;
  QString text_;
  std::optional<ReceiveStopRules> rules_;  // of that text
};

}  // namespace vorn
