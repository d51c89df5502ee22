#include "frame/request_timer.h"

namespace vorn {
namespace {

constexpr int kTickMs = 100;

}  // namespace

RequestTimer::RequestTimer(Context& context, DispatchHost& host)
    : queue_(context), dispatcher_(context, queue_, host) {
  QObject::connect(&tmDialog_, &QTimer::timeout, &tmDialog_, [this] { dispatcher_.Tick(); });
  tmDialog_.start(kTickMs);
  // Nobody who clicked has to wait for the next tick.
  queue_.OnPosted([this] {
    QTimer::singleShot(0, &tmDialog_, [this] {
      if (tmDialog_.isActive()) dispatcher_.Tick();
    });
  });
}

}  // namespace vorn
