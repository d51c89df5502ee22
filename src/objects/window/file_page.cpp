#include "objects/window/file_page.h"

#include <QCheckBox>
#include <QHash>
#include <QLineEdit>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/shown_object.h"
#include "objects/window/control_names.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kTreeHeight = 110;

// What comes of it; nothing for a type of which none goes before the others.
QString MeaningOfDefault(const QString& type) {
  if (type == object_type::kProfile) {
    return Ui::tr("最後にログインしたプロファイルが既定になります。");
  }
  if (type == object_type::kAccount) {
    return Ui::tr("同じアドレスのアカウントのうち、送信に使うものにします。");
  }
  if (type == object_type::kFolder) return Ui::tr("起動したときに、このフォルダを開きます。");
  if (type == object_type::kBook) {
    return Ui::tr("メッセージの相手を登録するときに、このアドレスブックに登録します。");
  }
  return {};
}

}  // namespace

FilePage::FilePage(const Context& context, const QString& type, const SerialId& serialId)
    : FormPage(QStringLiteral("file"), Ui::tr("全般(&G)")), type_(type) {
  AddHidden(control::kText + AnyObject::kType)->setText(type);
  AddHidden(control::kText + AnyObject::kDraw)
      ->setText(type == object_type::kFolder ? QString() : type);
  txObject_ = AddText(control::kText + AnyObject::kName, Ui::tr("名前(&N)"));
  AddText(control::kText + AnyObject::kToolTip, Ui::tr("説明(&D)"));
  tvParent_ = new QTreeWidget(this);
  tvParent_->setObjectName(control::kTree + AnyObject::kParent);
  tvParent_->setHeaderHidden(true);
  tvParent_->setFixedHeight(kTreeHeight);
  tvParent_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  Layout().addRow(Ui::tr("場所(&P)"), tvParent_);
  FillTree(context, type, serialId);
  QCheckBox* enabled = AddCheck(control::kCheck + AnyObject::kEnabled, Ui::tr("使用する(&U)"));
  enabled->setChecked(true);
  enabled->setVisible(type == object_type::kAccount);  // it says nothing of the others
  QCheckBox* standard = AddCheck(control::kCheck + AnyObject::kDefault, Ui::tr("既定にする(&T)"));
  standard->setToolTip(ShownToolTip(MeaningOfDefault(type)));
  standard->setVisible(!standard->toolTip().isEmpty());
  // By a rule that goes before what is chosen here.
  if (type == object_type::kProfile) standard->setEnabled(false);
  QCheckBox* system = AddCheck(control::kCheck + AnyObject::kSystem, Ui::tr("標準のオブジェクト"));
  system->setEnabled(false);
  system->hide();
}

// Objects of the same type can hang under one another, but not under themselves.
void FilePage::FillTree(const Context& context, const QString& type, const SerialId& serialId) {
  auto* top = new QTreeWidgetItem(tvParent_, {Ui::tr("（最上位）")});
  top->setData(0, Qt::UserRole, QString());
  QHash<SerialId, QTreeWidgetItem*> items;
  for (const DiskPtr& object : context.Objects) {
    if (!AnyObject(*object).Is(type) || type == object_type::kProfile) continue;
    auto* item = new QTreeWidgetItem(QStringList{ShownObject(*object).Name()});
    item->setData(0, Qt::UserRole, object->Serial().Text());
    items.insert(object->Serial(), item);
  }
  for (const DiskPtr& object : context.Objects) {
    QTreeWidgetItem* item = items.value(object->Serial());
    if (item == nullptr) continue;
    QTreeWidgetItem* parent = items.value(AnyObject(*object).Parent(), top);
    const QTreeWidgetItem* above = parent;
    while (above != nullptr && above != item) above = above->parent();
    (above == nullptr ? parent : top)->addChild(item);
  }
  if (QTreeWidgetItem* own = items.value(serialId)) delete own;  // with what hangs under it
  tvParent_->expandAll();
  tvParent_->setCurrentItem(top);
}

void FilePage::LetParent(const SerialId& serialId) {
  for (QTreeWidgetItemIterator item(tvParent_); *item != nullptr; ++item) {
    if (SerialIdOf((*item)->data(0, Qt::UserRole)) == serialId) tvParent_->setCurrentItem(*item);
  }
}

PageFault FilePage::Check() {
  if (!txObject_->text().trimmed().isEmpty()) return {};
  return {NoNameText(type_), txObject_};
}

}  // namespace vorn
