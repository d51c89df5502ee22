#include "mail/window/fields/file_drop.h"

#include <QMimeData>
#include <QWidget>

#include "kit/window/drop_event.h"

namespace vorn {

FileDrop::FileDrop(QWidget& window, std::function<bool(const QMimeData&)> takes,
                   std::function<void(const QMimeData&)> take)
    : QObject(&window), takes_(std::move(takes)), take_(std::move(take)) {
  window.setAcceptDrops(true);
  window.installEventFilter(this);
  for (QWidget* child : window.findChildren<QWidget*>()) child->installEventFilter(this);
}

bool FileDrop::eventFilter(QObject*, QEvent* event) {
  QDropEvent* drag = AsDrop(event);
  if (drag == nullptr) return false;
  if (!takes_(*drag->mimeData())) return false;
  drag->setDropAction(Qt::CopyAction);
  drag->accept();
  if (event->type() == QEvent::Drop) take_(*drag->mimeData());
  return true;
}

}  // namespace vorn
