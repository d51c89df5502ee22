#include "frame/window/panes/node_commands.h"

#include <QKeyEvent>
#include <QMenu>

#include "frame/window/panes/console_tree.h"
#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {

NodeCommands::NodeCommands(ConsoleTree& tree) : QObject(&tree), tree_(tree) {
  tree.installEventFilter(this);
  tree.setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&tree, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& at) { ShowMenu(tree_.viewport()->mapToGlobal(at)); });
}

void NodeCommands::NewObject(const QString& type) {
  // What lies in the dust bin looks thrown away.
  const bool hasPlace = tree_.HasObject() && tree_.CurrentTag() == type &&
                        type != object_type::kProfile && tree_.CurrentKey() != fixed_serial::kDust;
  Q_EMIT NewWanted(type, hasPlace ? tree_.CurrentKey() : SerialId());
}

void NodeCommands::ShowProperties() {
  if (tree_.HasObject()) Q_EMIT PropertiesWanted(tree_.CurrentKey(), tree_.CurrentTag());
}

void NodeCommands::Rename() {
  QTreeWidgetItem* item = tree_.currentItem();
  if (tree_.HasObject() && (item->flags() & Qt::ItemIsEditable) != 0) tree_.editItem(item);
}

void NodeCommands::Delete() {
  if (tree_.HasObject()) Q_EMIT DeletionWanted(tree_.CurrentKey(), tree_.CurrentTag());
}

bool NodeCommands::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto* press = static_cast<QKeyEvent*>(event);
  return TakeKey(press->key(), press->modifiers().testFlag(Qt::AltModifier));
}

bool NodeCommands::TakeKey(int key, bool withAlt) {
  if (key == Qt::Key_F2) {
    Rename();
  } else if (key == Qt::Key_Delete) {
    Delete();
  } else if (withAlt && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
    ShowProperties();
  } else {
    return false;
  }
  return true;
}

void NodeCommands::ShowMenu(const QPoint& at) {
  QMenu menu;
  const QString type = tree_.CurrentTag();
  QAction* create =
      menu.addAction(Ui::tr("新規作成(&N).."), this, [this, type] { NewObject(type); });
  create->setEnabled(!tree_.IsAtEvents() && !type.isEmpty());
  menu.addSeparator();
  const auto add = [&](const QString& text, void (NodeCommands::*command)()) {
    menu.addAction(text, this, command)->setEnabled(tree_.HasObject());
  };
  add(Ui::tr("名前の変更(&M)"), &NodeCommands::Rename);
  add(Ui::tr("削除(&D)"), &NodeCommands::Delete);
  menu.addSeparator();
  add(Ui::tr("プロパティ(&R).."), &NodeCommands::ShowProperties);
  menu.exec(at);
}

}  // namespace vorn
