#include "frame/window/panes/tree_nodes.h"

#include <QSignalBlocker>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/shown_object.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kKeyRole = Qt::UserRole;
constexpr int kTagRole = Qt::UserRole + 1;

struct GroupText {
  const QString& type;
  QString text;
};

// Whether `item` hangs under `above`, however deep.
bool IsBelow(const QTreeWidgetItem* item, const QTreeWidgetItem* above) {
  for (; item != nullptr; item = item->parent()) {
    if (item == above) return true;
  }
  return false;
}

// Among its siblings by their keys, as the objects are read at the next start.
void Insert(QTreeWidgetItem& place, QTreeWidgetItem* node) {
  const SerialId key = NodeKey(*node);
  int at = 0;
  while (at < place.childCount() && NodeKey(*place.child(at)) < key) ++at;
  place.insertChild(at, node);
}

// Without a number beside it a name has the whole width.
void GiveRoom(QTreeWidgetItem& node) {
  node.setFirstColumnSpanned(node.text(kCountColumn).isEmpty());
}

QList<GroupText> GroupTexts() {
  return {{object_type::kProfile, Ui::tr("プロファイル", "group")},
          {object_type::kFolder, Ui::tr("フォルダ", "group")},
          {object_type::kAccount, Ui::tr("アカウント", "group")},
          {object_type::kBook, Ui::tr("アドレスブック", "group")},
          {object_type::kBookmark, Ui::tr("ブックマーク", "group")}};
}

}  // namespace

SerialId NodeKey(const QTreeWidgetItem& node) {
  return SerialIdOf(node.data(0, kKeyRole));
}

QString NodeTag(const QTreeWidgetItem& node) {
  return node.data(0, kTagRole).toString();
}

void TreeNodes::Fill() {
  const QSignalBlocker quiet(&tree_);
  tree_.clear();
  groups_.clear();
  nodes_.clear();
  auto* root = new QTreeWidgetItem(&tree_, {AnyObject(*context_.Session).Name()});
  root->setIcon(0, Icon(object_type::kProfile));
  root->setData(0, kKeyRole, context_.Session->SerialID());
  root->setData(0, kTagRole, object_type::kProfile);
  for (const GroupText& group : GroupTexts()) {
    auto* item = new QTreeWidgetItem(root, {group.text});
    item->setIcon(0, Icon(group.type));
    item->setData(0, kTagRole, group.type);
    groups_.insert(group.type, item);
    GiveRoom(*item);
  }
  groups_.insert(object_type::kEvent, root);
  GiveRoom(*root);
  // Once more for those whose parents come after them.
  for (int round = 0; round < 2; ++round) {
    for (const DiskPtr& object : context_.Objects) Show(*object);
  }
  tree_.expandAll();
}

void TreeNodes::Show(const Disk& object) {
  QTreeWidgetItem* place = nodes_.value(AnyObject(object).Parent());
  if (place == nullptr) place = groups_.value(AnyObject(object).Type());
  if (place == nullptr) return;
  const QSignalBlocker quiet(&tree_);
  QTreeWidgetItem*& node = nodes_[object.Serial()];
  if (node == nullptr) {
    node = new QTreeWidgetItem;
    node->setFlags(node->flags() | Qt::ItemIsEditable);
    node->setData(0, kKeyRole, object.SerialID());
    Insert(*place, node);
  } else if (node->parent() != place && node != place && !IsBelow(place, node)) {
    node->parent()->removeChild(node);
    Insert(*place, node);
  }
  place->setExpanded(true);
  node->setText(0, ShownObject(object).Name());
  node->setToolTip(0, ShownToolTip(ShownObject(object).Tip()));
  node->setIcon(0, Icon(AnyObject(object).Draw()));
  node->setData(0, kTagRole, AnyObject(object).Type());
  GiveRoom(*node);
}

void TreeNodes::Refresh(const SerialId& serialId) {
  if (serialId == context_.Session->Serial() && tree_.topLevelItemCount() > 0) {
    tree_.topLevelItem(0)->setText(0, AnyObject(*context_.Session).Name());
  }
  if (const DiskPtr object = context_.Objects.Find(serialId)) {
    Show(*object);
  } else {
    Remove(serialId);
  }
}

// What hung under it finds another place.
void TreeNodes::Remove(const SerialId& serialId) {
  const QSignalBlocker quiet(&tree_);
  QTreeWidgetItem* node = nodes_.take(serialId);
  if (node == nullptr) return;
  for (QTreeWidgetItem* below : node->takeChildren()) {
    QTreeWidgetItem* place = groups_.value(NodeTag(*below));
    Insert(place != nullptr ? *place : *tree_.topLevelItem(0), below);
    below->setExpanded(true);
    GiveRoom(*below);
  }
  delete node;
}

QString TreeNodes::Text(const SerialId& serialId) const {
  const QTreeWidgetItem* node = nodes_.value(serialId);
  return node == nullptr ? QString() : node->text(0);
}

void TreeNodes::SetUnread(const SerialId& serialId, qint64 count, qint64 unsent) {
  QTreeWidgetItem* node = nodes_.value(serialId);
  if (node == nullptr) return;
  const QSignalBlocker quiet(&tree_);
  QStringList numbers;
  QStringList words;
  if (unsent > 0) {
    numbers.append(u'!' + QString::number(unsent));
    words.append(Ui::tr("送信できていないメッセージ %1通").arg(unsent));
  }
  if (count > 0) {
    numbers.append(QString::number(count));
    words.append(Ui::tr("未開封 %1通").arg(count));
  }
  node->setText(kCountColumn, numbers.join(u' '));
  GiveRoom(*node);
  node->setTextAlignment(kCountColumn, Qt::AlignRight | Qt::AlignVCenter);
  node->setToolTip(kCountColumn, ShownToolTip(words.join(Ui::tr("、"))));
  node->setData(kCountColumn, Qt::AccessibleTextRole, words.join(Ui::tr("、")));
  QFont font = node->font(0);
  font.setBold(!numbers.isEmpty());
  for (int column = 0; column < kTreeColumns; ++column) node->setFont(column, font);
}

SerialIds TreeNodes::Folders() const {
  SerialIds folders;
  for (QTreeWidgetItemIterator item(groups_.value(object_type::kFolder)); *item != nullptr;
       ++item) {
    if (NodeTag(**item) != object_type::kFolder) break;
    const SerialId key = NodeKey(**item);
    if (!key.IsEmpty()) folders.append(key);
  }
  return folders;
}

void TreeNodes::ShowEvent(const SerialId& serialId, const QString& title, const QString& icon) {
  QTreeWidgetItem* log = nodes_.value(fixed_serial::kEventLog);
  if (log == nullptr) return;
  const QSignalBlocker quiet(&tree_);
  if (QTreeWidgetItem* shown = nodes_.value(serialId)) {
    shown->setText(0, title);
    shown->setIcon(0, Icon(icon));
    return;
  }
  auto* node = new QTreeWidgetItem(log, {title});
  node->setIcon(0, Icon(icon));
  node->setData(0, kKeyRole, serialId.Text());
  node->setData(0, kTagRole, kLogTag);
  nodes_.insert(serialId, node);
  GiveRoom(*node);
  log->setExpanded(true);
}

bool TreeNodes::HasEvents() const {
  const QTreeWidgetItem* log = nodes_.value(fixed_serial::kEventLog);
  return log != nullptr && log->childCount() > 0;
}

void TreeNodes::RemoveEvents() {
  if (!HasEvents()) return;
  for (QTreeWidgetItem* event : nodes_.value(fixed_serial::kEventLog)->takeChildren()) {
    nodes_.remove(NodeKey(*event));
    delete event;
  }
}

}  // namespace vorn
