#pragma once

#include <QHash>
#include <QTreeWidget>

#include "storage/context.h"

namespace vorn {

/// The tree of the profile's objects, grouped by their types, and of the recorded events. A node's
/// key is its object's serial identifier, its tag the object's type or "log".
class ConsoleTree : public QTreeWidget {
  Q_OBJECT

 public:
  explicit ConsoleTree(Context& context, QWidget* parent = nullptr);

  /// Builds the tree anew from the loaded objects.
  void Fill();
  /// Brings one object's node in line with the object; adds or removes it when need be.
  void RefreshNode(const QString& serialId);
  QString NodeText(const QString& serialId) const;
  void AddEventNode(const QString& serialId, const QString& title, const QString& icon);
  bool HasEvents() const;
  void RemoveEvents();
  void SelectNode(const QString& serialId);
  /// Shows beside a folder how many of its messages are not yet opened; nothing for none.
  void SetUnread(const QString& serialId, qint64 count);
  /// The serial identifiers of the folders in the tree, from the top.
  QStringList Folders() const;

 Q_SIGNALS:
  /// The user wants to see what the node stands for, where it has a page in a tab of its own.
  void NodeOpened(const QString& key, const QString& tag, bool inTabOfItsOwn);
  void NewWanted(const QString& type, const QString& parent);
  void PropertiesWanted(const QString& key, const QString& tag);
  /// The node bears the new name already.
  void NodeRenamed(const QString& key, const QString& tag);
  void DeletionWanted(const QString& key, const QString& tag);
  /// A message of a folder's page was dropped onto a folder that takes messages.
  void MessageDropped(const QString& message, const QString& folder);

 public:
  /// Commands on the current node, for menus.
  void NewObject(const QString& type);
  void ShowProperties();
  void RenameNode();
  void DeleteNode();
  QString CurrentKey() const;
  QString CurrentTag() const;
  /// Whether the current node stands for an object.
  bool HasObject() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void Open(const QTreeWidgetItem& item, bool inTabOfItsOwn);
  void TakeName(QTreeWidgetItem* item);
  QString TakingFolderAt(const QPoint& at) const;
  QTreeWidgetItem* Group(const QString& type) const;
  void ShowObject(const Disk& object);
  void RemoveNode(const QString& serialId);

  Context& context_;
  QHash<QString, QTreeWidgetItem*> groups_;  // by type
  QHash<QString, QTreeWidgetItem*> nodes_;   // by key
  QString pressed_;                          // the key of the node under the pressed button
};

}  // namespace vorn
