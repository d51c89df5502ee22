#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <atomic>
#include <functional>
#include <memory>

#include "storage/context.h"
#include "storage/result.h"

class QThread;

namespace vorn {

/// Asks the profile's mail file a question with a condition of the user's, on a thread and a
/// connection of its own, so that the windows live meanwhile and the user can stop it.
class ConditionRun : public QObject {
 public:
  struct Answer {
    Result<QVariantList> values;  ///< the first column
    qint64 ms = 0;
  };
  using Then = std::function<void(const Answer&)>;

  /// Begins with `select`, a statement of the dialect. `then` gets the answer in the event loop,
  /// unless it is stopped before.
  ConditionRun(Context& context, const QString& select, int limitMs, Then then);
  /// Stops it.
  ~ConditionRun() override;

  /// Ends the question, which takes some milliseconds; there will be no answer.
  void Stop();
  bool IsRunning() const { return thread_ != nullptr; }

 private:
  Result<> Connect();
  void Begin(const QByteArray& sql, const QVariantList& parameters, int limitMs);
  void End(const Answer& answer);

  Context& context_;
  QString path_;
  std::shared_ptr<Connection> connection_;
  std::unique_ptr<QThread> thread_;
  std::atomic<bool> stop_ = false;
  Then then_;
};

/// Lets go of one in the midst of its answer, too.
struct StopCondition {
  void operator()(ConditionRun* run) const {
    run->Stop();
    run->deleteLater();
  }
};
using ConditionRunPtr = std::unique_ptr<ConditionRun, StopCondition>;

}  // namespace vorn
