#pragma once

#include <QDeadlineTimer>
#include <QSet>
#include <QString>
#include <functional>

#include "storage/context.h"
#include "storage/known_damage.h"

class QWidget;

namespace vorn {

/// Tells the user of files that are damaged, each once in a run, and keeps what he decides: whether
/// mail is received all the same.
class DamageQuestions {
 public:
  /// `record` takes the sentence for the event log.
  DamageQuestions(Context& context, QWidget& window,
                  std::function<void(const QString& sentence)> record)
      : context_(context), window_(window), record_(std::move(record)) {}

  /// Asks of every file that nothing was decided about.
  void Ask();
  /// Whether damage has been met that `Ask` has not looked at and may look at by now.
  bool IsDue() const;

 private:
  void AskAbout(const KnownDamage& damage);
  void Accept(const QString& name);

  Context& context_;
  QWidget& window_;
  std::function<void(const QString&)> record_;
  QSet<QString> told_;
  QDeadlineTimer rest_;
};

}  // namespace vorn
