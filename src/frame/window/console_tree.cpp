#include "frame/window/console_tree.h"

#include <QSignalBlocker>

#include "frame/window/icons.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"

namespace vorn {
namespace {

constexpr int kKeyRole = Qt::UserRole;
constexpr int kTagRole = Qt::UserRole + 1;
const QString kLogTag = QStringLiteral("log");

struct GroupText {
  const QString& type;
  QString text;
};

QList<GroupText> GroupTexts() {
  return {{object_type::kFolder, QStringLiteral("フォルダ")},
          {object_type::kAccount, QStringLiteral("アカウント")},
          {object_type::kBook, QStringLiteral("アドレスブック")},
          {object_type::kBookmark, QStringLiteral("ブックマーク")}};
}

}  // namespace

ConsoleTree::ConsoleTree(Context& context, QWidget* parent)
    : QTreeWidget(parent), context_(context) {
  setObjectName(QStringLiteral("tvConsole"));
  setAccessibleName(QStringLiteral("コンソールツリー"));
  setHeaderHidden(true);
  setIconSize(QSize(20, 20));
  setRootIsDecorated(true);
  const auto open = [this](QTreeWidgetItem* item) {
    const QString key = item->data(0, kKeyRole).toString();
    if (!key.isEmpty()) Q_EMIT NodeOpened(key, item->data(0, kTagRole).toString());
  };
  // One click shows a folder; Enter does it for the keyboard.
  connect(this, &QTreeWidget::itemClicked, this, open);
  connect(this, &QTreeWidget::itemActivated, this, open);
}

void ConsoleTree::Fill() {
  clear();
  groups_.clear();
  nodes_.clear();
  auto* root = new QTreeWidgetItem(this, {context_.Session->Text(u"Object")});
  root->setIcon(0, Icon(object_type::kProfile));
  for (const GroupText& group : GroupTexts()) {
    auto* item = new QTreeWidgetItem(root, {group.text});
    item->setIcon(0, Icon(group.type));
    groups_.insert(group.type, item);
  }
  groups_.insert(object_type::kEvent, root);
  for (const DiskPtr& object : context_.Objects) ShowObject(*object);
  expandAll();
}

QTreeWidgetItem* ConsoleTree::Group(const QString& type) const {
  return groups_.value(type);
}

void ConsoleTree::ShowObject(const Disk& object) {
  QTreeWidgetItem* group = Group(object.Text(u"FormName"));
  if (group == nullptr) return;
  QTreeWidgetItem*& node = nodes_[object.SerialID()];
  if (node == nullptr) node = new QTreeWidgetItem(group);
  node->setText(0, object.Text(u"Object"));
  node->setToolTip(0, object.Text(u"ToolTipText"));
  node->setIcon(0, Icon(object.Text(u"Draw")));
  node->setData(0, kKeyRole, object.SerialID());
  node->setData(0, kTagRole, object.Text(u"FormName"));
}

void ConsoleTree::RefreshNode(const QString& serialId) {
  if (const DiskPtr object = context_.Objects.Find(serialId)) {
    ShowObject(*object);
  } else {
    delete nodes_.take(serialId);
  }
}

QString ConsoleTree::NodeText(const QString& serialId) const {
  const QTreeWidgetItem* node = nodes_.value(serialId);
  return node == nullptr ? QString() : node->text(0);
}

void ConsoleTree::AddEventNode(const QString& serialId, const QString& title, const QString& icon) {
  QTreeWidgetItem* log = nodes_.value(fixed_serial::kEventLog);
  if (log == nullptr) return;
  auto* node = new QTreeWidgetItem(log, {title});
  node->setIcon(0, Icon(icon));
  node->setData(0, kKeyRole, serialId);
  node->setData(0, kTagRole, kLogTag);
  nodes_.insert(serialId, node);
  log->setExpanded(true);
}

void ConsoleTree::SelectNode(const QString& serialId) {
  const QSignalBlocker quiet(this);
  if (QTreeWidgetItem* node = nodes_.value(serialId)) setCurrentItem(node);
}

}  // namespace vorn
