#pragma once

#include <QTreeWidget>

#include "frame/window/panes/tree_nodes.h"
#include "storage/context.h"

namespace vorn {

class MessageDrop;
class NodeCommands;

/// The tree of the main window as the user works with it: its `TreeNodes`, which of them is the
/// current one, and how they are opened and named.
class ConsoleTree : public QTreeWidget {
  Q_OBJECT

 public:
  explicit ConsoleTree(Context& context, QWidget* parent = nullptr);

  TreeNodes& Nodes() { return nodes_; }

  void SelectNode(const SerialId& serialId);
  SerialId CurrentKey() const;
  QString CurrentTag() const;
  /// Whether the current node stands for an object, or else for events.
  bool HasObject() const;
  bool IsAtEvents() const;
  /// What is done with the current node.
  NodeCommands& Commands() const { return *commands_; }
  /// What is dropped onto a node.
  MessageDrop& Drop() const { return *drop_; }

 Q_SIGNALS:
  /// The user wants to see what the node stands for, where it has a page in a tab of its own.
  void NodeOpened(const SerialId& key, const QString& tag, bool inTabOfItsOwn);
  /// The node bears the new name already.
  void NodeRenamed(const SerialId& key, const QString& tag);

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void Open(const QTreeWidgetItem& item, bool inTabOfItsOwn);
  void TakeName(QTreeWidgetItem* item);

  TreeNodes nodes_;
  NodeCommands* commands_;
  MessageDrop* drop_;
  SerialId pressed_;  // the key of the node under the pressed button
};

}  // namespace vorn
