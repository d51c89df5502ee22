#include "frame/window/panes/console_tree.h"

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QTreeWidgetItemIterator>

#include "frame/window/panes/message_drop.h"
#include "frame/window/panes/node_commands.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kColumns = 2;
constexpr int kCountColumn = 1;
constexpr int kIndent = 14;
constexpr int kIconSize = 20;
constexpr int kKeyRole = Qt::UserRole;
constexpr int kTagRole = Qt::UserRole + 1;
const QString kLogTag = QStringLiteral("log");

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

SerialId KeyOf(const QTreeWidgetItem& item) {
  return SerialIdOf(item.data(0, kKeyRole));
}

// Among its siblings by their keys, as the objects are read at the next start.
void Insert(QTreeWidgetItem& place, QTreeWidgetItem* node) {
  const SerialId key = KeyOf(*node);
  int at = 0;
  while (at < place.childCount() && KeyOf(*place.child(at)) < key) ++at;
  place.insertChild(at, node);
}

// Without a number beside it a name has the whole width.
void GiveRoom(QTreeWidgetItem& node) {
  node.setFirstColumnSpanned(node.text(kCountColumn).isEmpty());
}

bool IsControlHeld() {
  return QApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
}

QList<GroupText> GroupTexts() {
  return {{object_type::kProfile, Ui::tr("プロファイル", "group")},
          {object_type::kFolder, Ui::tr("フォルダ", "group")},
          {object_type::kAccount, Ui::tr("アカウント", "group")},
          {object_type::kBook, Ui::tr("アドレスブック", "group")},
          {object_type::kBookmark, Ui::tr("ブックマーク", "group")}};
}

}  // namespace

ConsoleTree::ConsoleTree(Context& context, QWidget* parent)
    : QTreeWidget(parent),
      context_(context),
      commands_(new NodeCommands(*this)),
      drop_(new MessageDrop(context, *this, kKeyRole)) {
  setObjectName(QStringLiteral("tvConsole"));
  setAccessibleName(Ui::tr("コンソールツリー"));
  setHeaderHidden(true);
  setIconSize(QSize(kIconSize, kIconSize));
  setIndentation(kIndent);
  setRootIsDecorated(true);
  setTextElideMode(Qt::ElideMiddle);  // the time of an event stands at its end
  setColumnCount(kColumns);
  header()->setStretchLastSection(false);
  header()->setMinimumSectionSize(0);
  header()->setSectionResizeMode(0, QHeaderView::Stretch);
  header()->setSectionResizeMode(kCountColumn, QHeaderView::ResizeToContents);
  // One click shows a folder; Enter does it for the keyboard, and opens other objects' properties.
  connect(this, &QTreeWidget::itemPressed, this,
          [this](QTreeWidgetItem* item) { pressed_ = KeyOf(*item); });
  connect(this, &QTreeWidget::itemClicked, this,
          [this](QTreeWidgetItem* item) { Open(*item, IsControlHeld()); });
  connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
    const QString tag = item->data(0, kTagRole).toString();
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
  const SerialId key = KeyOf(item);
  if (!key.IsEmpty()) Q_EMIT NodeOpened(key, item.data(0, kTagRole).toString(), inTabOfItsOwn);
}

void ConsoleTree::Fill() {
  const QSignalBlocker quiet(this);
  clear();
  groups_.clear();
  nodes_.clear();
  auto* root = new QTreeWidgetItem(this, {AnyObject(*context_.Session).Name()});
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
    for (const DiskPtr& object : context_.Objects) ShowObject(*object);
  }
  expandAll();
}

QTreeWidgetItem* ConsoleTree::Group(const QString& type) const {
  return groups_.value(type);
}

void ConsoleTree::ShowObject(const Disk& object) {
  QTreeWidgetItem* place = nodes_.value(AnyObject(object).Parent());
  if (place == nullptr) place = Group(AnyObject(object).Type());
  if (place == nullptr) return;
  const QSignalBlocker quiet(this);
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
  node->setText(0, AnyObject(object).ShownName());
  node->setToolTip(0, ShownToolTip(AnyObject(object).ShownTip()));
  node->setIcon(0, Icon(AnyObject(object).Draw()));
  node->setData(0, kTagRole, AnyObject(object).Type());
  GiveRoom(*node);
}

void ConsoleTree::RefreshNode(const SerialId& serialId) {
  if (serialId == context_.Session->Serial() && topLevelItemCount() > 0) {
    topLevelItem(0)->setText(0, AnyObject(*context_.Session).Name());
  }
  if (const DiskPtr object = context_.Objects.Find(serialId)) {
    ShowObject(*object);
  } else {
    RemoveNode(serialId);
  }
}

// What hung under it finds another place.
void ConsoleTree::RemoveNode(const SerialId& serialId) {
  const QSignalBlocker quiet(this);
  QTreeWidgetItem* node = nodes_.take(serialId);
  if (node == nullptr) return;
  for (QTreeWidgetItem* below : node->takeChildren()) {
    QTreeWidgetItem* place = Group(below->data(0, kTagRole).toString());
    Insert(place != nullptr ? *place : *topLevelItem(0), below);
    below->setExpanded(true);
    GiveRoom(*below);
  }
  delete node;
}

QString ConsoleTree::NodeText(const SerialId& serialId) const {
  const QTreeWidgetItem* node = nodes_.value(serialId);
  return node == nullptr ? QString() : node->text(0);
}

void ConsoleTree::ShowEvent(const SerialId& serialId, const QString& title, const QString& icon) {
  QTreeWidgetItem* log = nodes_.value(fixed_serial::kEventLog);
  if (log == nullptr) return;
  const QSignalBlocker quiet(this);
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

bool ConsoleTree::HasEvents() const {
  const QTreeWidgetItem* log = nodes_.value(fixed_serial::kEventLog);
  return log != nullptr && log->childCount() > 0;
}

void ConsoleTree::RemoveEvents() {
  if (!HasEvents()) return;
  for (QTreeWidgetItem* event : nodes_.value(fixed_serial::kEventLog)->takeChildren()) {
    nodes_.remove(KeyOf(*event));
    delete event;
  }
}

void ConsoleTree::SelectNode(const SerialId& serialId) {
  if (state() == EditingState) return;  // a name that is being typed would be taken as it stands
  const QSignalBlocker quiet(this);
  if (QTreeWidgetItem* node = nodes_.value(serialId)) setCurrentItem(node);
}

void ConsoleTree::SetUnread(const SerialId& serialId, qint64 count, qint64 unsent) {
  QTreeWidgetItem* node = nodes_.value(serialId);
  if (node == nullptr) return;
  const QSignalBlocker quiet(this);
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
  for (int column = 0; column < kColumns; ++column) node->setFont(column, font);
}

SerialIds ConsoleTree::Folders() const {
  SerialIds folders;
  for (QTreeWidgetItemIterator item(groups_.value(object_type::kFolder)); *item != nullptr;
       ++item) {
    if ((*item)->data(0, kTagRole).toString() != object_type::kFolder) break;
    const SerialId key = KeyOf(**item);
    if (!key.IsEmpty()) folders.append(key);
  }
  return folders;
}

SerialId ConsoleTree::CurrentKey() const {
  const QTreeWidgetItem* item = currentItem();
  return item == nullptr ? SerialId() : KeyOf(*item);
}

QString ConsoleTree::CurrentTag() const {
  const QTreeWidgetItem* item = currentItem();
  return item == nullptr ? QString() : item->data(0, kTagRole).toString();
}

bool ConsoleTree::HasObject() const {
  return !CurrentKey().IsEmpty() && CurrentTag() != kLogTag &&
         CurrentKey() != fixed_serial::kEventLog;
}

bool ConsoleTree::IsAtEvents() const {
  return CurrentTag() == kLogTag || CurrentTag() == object_type::kEvent;
}

void ConsoleTree::TakeName(QTreeWidgetItem* item) {
  Q_EMIT NodeRenamed(KeyOf(*item), item->data(0, kTagRole).toString());
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
  pressed_ = item == nullptr ? SerialId() : KeyOf(*item);
}

void ConsoleTree::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) {
    const QTreeWidgetItem* item = itemAt(event->position().toPoint());
    if (item != nullptr && item == nodes_.value(pressed_)) Open(*item, true);
    return;
  }
  const QTreeWidgetItem* slid = itemAt(event->position().toPoint()) == nodes_.value(pressed_)
                                    ? nullptr
                                    : nodes_.value(pressed_);
  pressed_ = {};
  QTreeWidget::mouseReleaseEvent(event);
  if (slid != nullptr && event->button() == Qt::LeftButton) Open(*slid, IsControlHeld());
}

}  // namespace vorn
