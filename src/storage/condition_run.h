#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <atomic>
#include <functional>
#include <memory>
#include <utility>

#include "storage/base/result.h"
#include "storage/context.h"

class QThread;

namespace vorn {

/// What looks at each value of an answer for itself, on the thread that asks, and how many it keeps
/// at most. It takes what time it takes.
struct ConditionSieve {
  std::function<bool(Connection& connection, const QString& value)> keeps;
  qsizetype most = 0;
};

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
  /// unless it is stopped before: of the values those that the sieve keeps, if there is one.
  ConditionRun(Context& context, const QString& select, int limitMs, Then then,
               ConditionSieve sieve = {});
  /// Stops it.
  ~ConditionRun() override;

  /// Ends the question, which takes some milliseconds or the sieve's look at one value; there will
  /// be no answer.
  void Stop();
  bool IsRunning() const { return thread_ != nullptr; }
  /// How many values the sieve has looked at, and of how many; 0 as long as they are asked for.
  std::pair<qint64, qint64> Progress() const { return {sifted_, toSift_}; }

 private:
  Result<> Connect();
  void Begin(const QByteArray& sql, const QVariantList& parameters, int limitMs);
  QVariantList Sift(const QVariantList& values);
  void End(const Answer& answer);

  Context& context_;
  QString path_;
  std::shared_ptr<Connection> connection_;
  std::unique_ptr<QThread> thread_;
  std::atomic<bool> stop_ = false;
  Then then_;
  ConditionSieve sieve_;
  std::atomic<qint64> sifted_ = 0;
  std::atomic<qint64> toSift_ = 0;
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
