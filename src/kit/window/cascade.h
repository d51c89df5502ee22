#pragma once

#include <QList>
#include <QRect>

namespace vorn {

/// Where a window goes that would cover others, whose upper left corners are `taken`: a step
/// further down and to the right of each, and whole on the screen, beginning anew at its corner
/// where there is no room. A window that is larger than the screen becomes as large as that.
inline QRect CascadedPlace(QRect wanted, const QList<QPoint>& taken, const QRect& screen) {
  constexpr int kStep = 28;
  wanted.setSize(wanted.size().boundedTo(screen.size()));
  const QPoint most(screen.right() + 1 - wanted.width(), screen.bottom() + 1 - wanted.height());
  const auto inside = [&](QPoint place) {
    return QPoint(qBound(screen.left(), place.x(), most.x()),
                  qBound(screen.top(), place.y(), most.y()));
  };
  wanted.moveTopLeft(inside(wanted.topLeft()));
  for (qsizetype tries = 0; tries < taken.size() && taken.contains(wanted.topLeft()); ++tries) {
    const QPoint next = wanted.topLeft() + QPoint(kStep, kStep);
    wanted.moveTopLeft(inside(next) == next ? next : screen.topLeft());
  }
  return wanted;
}

}  // namespace vorn
