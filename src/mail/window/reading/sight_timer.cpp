#include "mail/window/reading/sight_timer.h"

#include <utility>

namespace vorn {
namespace {

constexpr int kInSightMs = 2000;

}  // namespace

SightTimer::SightTimer(QObject* parent) : QObject(parent), timer_(this) {
  timer_.setObjectName(QStringLiteral("tmInSight"));
  timer_.setSingleShot(true);
  timer_.setInterval(kInSightMs);
  connect(&timer_, &QTimer::timeout, this, [this] {
    counts_ = false;
    Q_EMIT HasBeenSeen();
  });
}

void SightTimer::Begin(bool counts) {
  counts_ = counts;
  counts_ && !isCovered_ ? timer_.start() : timer_.stop();
}

void SightTimer::Cover(bool covered) {
  if (std::exchange(isCovered_, covered) != covered) Begin(counts_);
}

}  // namespace vorn
