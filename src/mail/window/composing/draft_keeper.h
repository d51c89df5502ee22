#pragma once

#include <QTimer>

#include "storage/context.h"

namespace vorn {

class MessageDocument;
class MessageForm;

/// Keeps a message that is being written as a draft, now and then, so that it survives a crash of
/// the program or the machine.
class DraftKeeper : public QTimer {
 public:
  /// `parent` finds the timer by its name, "tmDraft".
  DraftKeeper(Context& context, MessageDocument& document, MessageForm& form, QObject& parent);

  /// Whether it was edited since it was kept.
  void SetDue(bool isDue) { isDue_ = isDue; }
  void Keep();

 private:
  Context& context_;
  MessageDocument& document_;
  MessageForm& form_;
  bool isDue_ = false;
};

}  // namespace vorn
