#pragma once

#include <QTimer>

#include "frame/source_watch.h"
#include "frame/window/notices/damage_questions.h"

namespace vorn {

/// Looks for damage in the profile's files in idle moments, and tells the user of what is found
/// there or was met elsewhere.
class DamageWatch {
 public:
  /// Nothing is looked for while `mayWork` does not agree; see `DamageQuestions` for the others.
  DamageWatch(Context& context, QWidget& window, std::function<bool()> mayWork,
              std::function<void(const QString& sentence)> record)
      : questions_(context, window, std::move(record)), watch_(context, std::move(mayWork)) {
    watch_.OnDamage([this] { QTimer::singleShot(0, &watch_, [this] { questions_.Ask(); }); });
  }

  void Start() { watch_.Start(); }
  void Ask() { questions_.Ask(); }
  bool IsDue() const { return questions_.IsDue(); }

 private:
  DamageQuestions questions_;
  SourceWatch watch_;
};

}  // namespace vorn
