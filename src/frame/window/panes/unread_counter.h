#pragma once

#include <QDeadlineTimer>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>

#include "storage/base/serial_id.h"
#include "storage/condition_run.h"

namespace vorn {

class TreeNodes;

/// Counts the unopened messages of the tree's folders, one folder at a time in idle moments, and
/// those that could not be sent; shows the counts in the tree.
class UnreadCounter : public QObject {
  Q_OBJECT

 public:
  /// `isBusy` tells when the counting has to wait.
  UnreadCounter(Context& context, TreeNodes& nodes, std::function<bool()> isBusy);
  /// Begins anew with all folders.
  void CountSoon();
  void Stop() {
    timer_.stop();
    run_.reset();
  }

 private:
  void CountNext();
  void CountElsewhere(const SerialId& folder);

  Context& context_;
  TreeNodes& nodes_;
  std::function<bool()> isBusy_;
  QTimer timer_;
  ConditionRunPtr run_;                    // of a folder whose counting takes long
  SerialIds folders_;                      // that are still to be counted
  QHash<SerialId, QDeadlineTimer> rests_;  // how long each is not counted again
};

}  // namespace vorn
