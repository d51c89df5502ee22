#pragma once

#include <QByteArray>
#include <QHash>
#include <QTimer>
#include <functional>
#include <utility>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

class MessageDocument;
class MessageForm;
struct MessageModel;

/// Keeps a message that is being written as a draft, now and then, so that it survives a crash of
/// the program or the machine.
class DraftKeeper : public QTimer {
 public:
  /// `parent` finds the timer by its name, "tmDraft".
  DraftKeeper(Context& context, MessageDocument& document, MessageForm& form, QObject& parent);

  /// Whether it was edited since it was kept.
  void SetDue(bool isDue) { isDue_ = isDue; }
  void Keep();
  /// Gets the outcome of each keeping.
  void OnKept(std::function<void(const Result<>& kept)> told) { told_ = std::move(told); }

 private:
  void BringBack(MessageModel& model) const;
  QStringList Hold(MessageModel& model);

  Context& context_;
  MessageDocument& document_;
  MessageForm& form_;
  std::function<void(const Result<>&)> told_;
  QHash<QString, QByteArray> held_;  // files by their paths, as they were when they were kept last
  bool isDue_ = false;
};

}  // namespace vorn
