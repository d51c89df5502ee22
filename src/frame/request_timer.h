#pragma once

#include <QTimer>

#include "frame/dispatcher.h"

namespace vorn {

/// The requests for windows, which are executed one after the other: by a timer, and at once after
/// one was posted.
class RequestTimer {
 public:
  RequestTimer(Context& context, DispatchHost& host);

  RequestQueue& Queue() { return queue_; }
  /// Executes nothing any more.
  void Stop() { tmDialog_.stop(); }

 private:
  RequestQueue queue_;
  Dispatcher dispatcher_;
  QTimer tmDialog_;
};

}  // namespace vorn
