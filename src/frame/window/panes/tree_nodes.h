#pragma once

#include <QHash>
#include <QString>

#include "events/event_log.h"
#include "storage/context.h"

class QTreeWidget;
class QTreeWidgetItem;

namespace vorn {

/// The columns of the tree.
inline constexpr int kCountColumn = 1;
inline constexpr int kTreeColumns = 2;

/// The tag of the nodes of events.
inline const QString kLogTag = QStringLiteral("log");

/// The serial identifier of what a node stands for; none for a group.
SerialId NodeKey(const QTreeWidgetItem& node);
/// The type of the object that it stands for, or of those in the group, or `kLogTag`.
QString NodeTag(const QTreeWidgetItem& node);

/// The nodes of the main window's tree: the profile's objects, grouped by their types, and the
/// recorded events. What it does to them the tree does not signal.
class TreeNodes : public EventView {
 public:
  TreeNodes(Context& context, QTreeWidget& tree) : context_(context), tree_(tree) {}

  /// Builds all anew from the loaded objects.
  void Fill();
  /// Brings one object's node in line with the object; adds or removes it when need be.
  void Refresh(const SerialId& serialId);
  /// The node of an object or an event; null when there is none.
  QTreeWidgetItem* Find(const SerialId& serialId) const { return nodes_.value(serialId); }
  QString Text(const SerialId& serialId) const;
  /// Shows beside a folder how many of its messages are not yet opened; nothing for none. With
  /// `unsent` these are, before them, those that were refused or are doubtful.
  void SetUnread(const SerialId& serialId, qint64 count, qint64 unsent = 0);
  /// The serial identifiers of the folders, from the top.
  SerialIds Folders() const;

  void ShowEvent(const SerialId& serialId, const QString& title, const QString& icon) override;
  bool HasEvents() const;
  void RemoveEvents();

 private:
  void Show(const Disk& object);
  void Remove(const SerialId& serialId);

  Context& context_;
  QTreeWidget& tree_;
  QHash<QString, QTreeWidgetItem*> groups_;  // by type
  QHash<SerialId, QTreeWidgetItem*> nodes_;  // by key
};

}  // namespace vorn
