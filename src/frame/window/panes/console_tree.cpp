#include "frame/window/panes/console_tree.h"

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QSignalBlocker>

#include "frame/window/panes/message_drop.h"
#include "frame/window/panes/node_commands.h"
#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kIndent = 14;
constexpr int kTreeIconSize = 20;

bool IsControlHeld() {
  return QApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
}

}  // namespace

ConsoleTree::ConsoleTree(Context& context, QWidget* parent)
    : QTreeWidget(parent),
      nodes_(context, *this),
      commands_(new NodeCommands(*this)),
      drop_(new MessageDrop(context, *this)) {
  setObjectName(QStringLiteral("tvConsole"));
  setAccessibleName(Ui::tr("コンソールツリー"));
  setHeaderHidden(true);
  setIconSize(QSize(kTreeIconSize, kTreeIconSize));
  setIndentation(kIndent);
  setRootIsDecorated(true);
  setTextElideMode(Qt::ElideMiddle);  // the time of an event stands at its end
  setColumnCount(kTreeColumns);
  header()->setStretchLastSection(false);
  header()->setMinimumSectionSize(0);
  header()->setSectionResizeMode(0, QHeaderView::Stretch);
  header()->setSectionResizeMode(kCountColumn, QHeaderView::ResizeToContents);
  // One click shows a folder; Enter does it for the keyboard, and opens other objects' properties.
  connect(this, &QTreeWidget::itemPressed, this,
          [this](QTreeWidgetItem* item) { pressed_ = NodeKey(*item); });
  connect(this, &QTreeWidget::itemClicked, this,
          [this](QTreeWidgetItem* item) { Open(*item, IsControlHeld()); });
  connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
    const QString tag = NodeTag(*item);
    if (tag == object_type::kFolder || tag == kLogTag) {
      Open(*item, IsControlHeld());
    } else {
      commands_->ShowProperties();
    }
  });
  connect(this, &QTreeWidget::itemChanged, this, &ConsoleTree::TakeName);
  setEditTriggers(QAbstractItemView::NoEditTriggers);  // F2 is a command
}

void ConsoleTree::Open(const QTreeWidgetItem& item, bool inTabOfItsOwn) {
  const SerialId key = NodeKey(item);
  if (!key.IsEmpty()) Q_EMIT NodeOpened(key, NodeTag(item), inTabOfItsOwn);
}

void ConsoleTree::SelectNode(const SerialId& serialId) {
  if (state() == EditingState) return;  // a name that is being typed would be taken as it stands
  const QSignalBlocker quiet(this);
  if (QTreeWidgetItem* node = nodes_.Find(serialId)) setCurrentItem(node);
}

SerialId ConsoleTree::CurrentKey() const {
  const QTreeWidgetItem* item = currentItem();
  return item == nullptr ? SerialId() : NodeKey(*item);
}

QString ConsoleTree::CurrentTag() const {
  const QTreeWidgetItem* item = currentItem();
  return item == nullptr ? QString() : NodeTag(*item);
}

bool ConsoleTree::HasObject() const {
  return !CurrentKey().IsEmpty() && CurrentTag() != kLogTag &&
         CurrentKey() != fixed_serial::kEventLog;
}

bool ConsoleTree::IsAtEvents() const {
  return CurrentTag() == kLogTag || CurrentTag() == object_type::kEvent;
}

void ConsoleTree::TakeName(QTreeWidgetItem* item) {
  Q_EMIT NodeRenamed(NodeKey(*item), NodeTag(*item));
}

// A mouse that slides while its button is pressed would select one node after the other, and none
// of them would be opened.
void ConsoleTree::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton) QTreeWidget::mouseMoveEvent(event);
}

// The middle button opens a tab and selects nothing.
void ConsoleTree::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::MiddleButton) return QTreeWidget::mousePressEvent(event);
  const QTreeWidgetItem* item = itemAt(event->position().toPoint());
  pressed_ = item == nullptr ? SerialId() : NodeKey(*item);
}

void ConsoleTree::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) {
    const QTreeWidgetItem* item = itemAt(event->position().toPoint());
    if (item != nullptr && item == nodes_.Find(pressed_)) Open(*item, true);
    return;
  }
  const QTreeWidgetItem* slid = itemAt(event->position().toPoint()) == nodes_.Find(pressed_)
                                    ? nullptr
                                    : nodes_.Find(pressed_);
  pressed_ = {};
  QTreeWidget::mouseReleaseEvent(event);
  if (slid != nullptr && event->button() == Qt::LeftButton) Open(*slid, IsControlHeld());
}

}  // namespace vorn
