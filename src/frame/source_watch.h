#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

#include "storage/context.h"
#include "storage/engine/source_walk.h"

class QThread;

namespace vorn {

/// Goes through the sources of the profile's mail files in idle moments (see `WalkSources`): short
/// stretches on a thread of their own, with long rests between them. Sources without a digest get
/// theirs, however many there are; a bounded amount is verified per start, and the next start goes
/// on from there. What is found damaged is kept (`KeepDamage`).
class SourceWatch : public QObject {
 public:
  /// A stretch begins only when `mayWork` agrees.
  SourceWatch(Context& context, std::function<bool()> mayWork, QObject* parent = nullptr);
  /// Waits for the stretch that is under way, a fraction of a second.
  ~SourceWatch() override;

  void Start();
  /// Called after damage was found.
  void OnDamage(std::function<void()> act) { onDamage_ = std::move(act); }

  int RestMs = 2000;                          ///< between two stretches
  qint64 VerifiedBytes = 64LL * 1024 * 1024;  ///< at most so many are verified per start
  bool IsDone() const { return files_.isEmpty(); }

 private:
  void Begin();
  void End(const WalkOutcome& outcome);
  WalkPlace LoadPlace(const QString& file);
  void StorePlace(const QString& file, const WalkPlace& place);

  Context& context_;
  std::function<bool()> mayWork_;
  std::function<void()> onDamage_;
  QTimer rest_;
  QStringList files_;  // still to be gone through, the current one first
  WalkPlace place_;
  bool hasPlace_ = false;
  qint64 verified_ = 0;
  std::unique_ptr<QThread> thread_;
};

}  // namespace vorn
