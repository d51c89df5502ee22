#include "frame/window/panes/message_drop.h"

#include <QMimeData>
#include <QRubberBand>
#include <QTreeWidget>
#include <QUrl>

#include "frame/window/panes/tree_nodes.h"
#include "kit/window/drop_event.h"
#include "objects/folder_object.h"
#include "objects/object_types.h"
#include "present/link_command.h"

namespace vorn {
namespace {

// The message whose link is being dragged from a folder's page.
SerialId DraggedMessage(const QMimeData& dragged) {
  for (const QUrl& url : dragged.urls()) {
    if (const auto request = ReadLinkCommand(url.toString(QUrl::FullyEncoded))) {
      return request->serialId;
    }
  }
  return {};
}

}  // namespace

MessageDrop::MessageDrop(Context& context, QTreeWidget& tree)
    : QObject(&tree),
      context_(context),
      tree_(tree),
      light_(new QRubberBand(QRubberBand::Rectangle, tree.viewport())) {
  tree.viewport()->setAcceptDrops(true);
  tree.viewport()->installEventFilter(this);
}

// A folder that is filled by hand, the dust bin, or the inbox, which takes out of the dust bin.
SerialId MessageDrop::TakingFolderAt(const QPoint& at) const {
  const QTreeWidgetItem* item = tree_.itemAt(at);
  const SerialId key = item == nullptr ? SerialId() : NodeKey(*item);
  const DiskPtr folder = context_.Objects.Find(key);
  if (folder == nullptr) return {};
  const bool takes = key == fixed_serial::kDust || key == fixed_serial::kInbox ||
                     FolderObject(*folder).ShowsWhatIsFiled();
  return takes ? key : SerialId();
}

void MessageDrop::Light(const QRect& place) {
  light_->setGeometry(place);
  light_->setVisible(!place.isEmpty());
}

bool MessageDrop::eventFilter(QObject*, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type == QEvent::DragLeave) Light({});
  QDropEvent* drag = AsDrop(event);
  if (drag == nullptr) return false;
  const SerialId message = DraggedMessage(*drag->mimeData());
  const QPoint at = drag->position().toPoint();
  const SerialId folder = TakingFolderAt(at);
  const bool isLit = !message.IsEmpty() && !folder.IsEmpty() && type != QEvent::Drop;
  Light(isLit ? tree_.visualItemRect(tree_.itemAt(at)) : QRect());
  // What has come in may go on to a folder that takes it.
  if (message.IsEmpty() || (folder.IsEmpty() && type != QEvent::DragEnter)) {
    event->ignore();
    return true;
  }
  drag->acceptProposedAction();
  if (type == QEvent::Drop) Q_EMIT Dropped(message, folder);
  return true;
}

}  // namespace vorn
