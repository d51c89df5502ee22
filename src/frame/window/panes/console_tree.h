#pragma once

#include <QHash>
#include <QTreeWidget>

#include "events/event_log.h"
#include "storage/context.h"

namespace vorn {

class MessageDrop;
class NodeCommands;

/// The tree of the profile's objects, grouped by their types, and of the recorded events. A node's
/// key is its object's serial identifier, its tag the object's type or "log".
class ConsoleTree : public QTreeWidget, public EventView {
  Q_OBJECT

 public:
  explicit ConsoleTree(Context& context, QWidget* parent = nullptr);

  /// Builds the tree anew from the loaded objects.
  void Fill();
  /// Brings one object's node in line with the object; adds or removes it when need be.
  void RefreshNode(const SerialId& serialId);
  QString NodeText(const SerialId& serialId) const;
  void ShowEvent(const SerialId& serialId, const QString& title, const QString& icon) override;
  bool HasEvents() const;
  void RemoveEvents();
  void SelectNode(const SerialId& serialId);
  /// Shows beside a folder how many of its messages are not yet opened; nothing for none. With
  /// `unsent` these are, before them, those that were refused or are doubtful.
  void SetUnread(const SerialId& serialId, qint64 count, qint64 unsent = 0);
  /// The serial identifiers of the folders in the tree, from the top.
  SerialIds Folders() const;

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
  QTreeWidgetItem* Group(const QString& type) const;
  void ShowObject(const Disk& object);
  void RemoveNode(const SerialId& serialId);

  Context& context_;
  NodeCommands* commands_;
  MessageDrop* drop_;
  QHash<QString, QTreeWidgetItem*> groups_;  // by type
  QHash<SerialId, QTreeWidgetItem*> nodes_;  // by key
  SerialId pressed_;                         // the key of the node under the pressed button
};

}  // namespace vorn
