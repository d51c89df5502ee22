#include "mail/window/fields/file_drop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

namespace vorn {

FileDrop::FileDrop(QWidget& window, std::function<bool(const QMimeData&)> takes,
                   std::function<void(const QMimeData&)> take)
    : QObject(&window), takes_(std::move(takes)), take_(std::move(take)) {
  window.setAcceptDrops(true);
  window.installEventFilter(this);
  for (QWidget* child : window.findChildren<QWidget*>()) child->installEventFilter(this);
}

bool FileDrop::eventFilter(QObject*, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) return false;
  auto* drag = static_cast<QDropEvent*>(event);
  if (!takes_(*drag->mimeData())) return false;
  drag->setDropAction(Qt::CopyAction);
  drag->accept();
  if (type == QEvent::Drop) take_(*drag->mimeData());
  return true;
}

}  // namespace vorn
