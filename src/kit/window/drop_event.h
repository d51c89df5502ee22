#pragma once

#include <QDropEvent>

namespace vorn {

/// The event of something that is dragged in, goes on over the widget or is dropped there; null for
/// any other.
inline QDropEvent* AsDrop(QEvent* event) {
  switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
      return static_cast<QDropEvent*>(event);
    default:
      return nullptr;
  }
}

}  // namespace vorn
