#include "mail/closing_rules.h"

namespace vorn {

Leaving RuleOfLeaving(const LeftMessage& message, bool dropsBlank) {
  if (message.isUnreadable) return Leaving::StateKept;
  if (message.isNew && message.isAnswer && !message.isEdited) {
    return Leaving::Dropped;  // it can be made again
  }
  if (message.isNew && message.isBlank && dropsBlank) return Leaving::Dropped;
  if (message.isErased && message.isEditable) return Leaving::AskedAboutAnew;
  if (message.isNew) return Leaving::AskedAbout;
  const bool isWritten = message.isEditable && message.isEdited;
  return isWritten ? Leaving::Stored : Leaving::StateKept;
}

}  // namespace vorn
