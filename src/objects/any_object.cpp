#include "objects/any_object.h"

#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
QString TypeCaption(const QString& type) {
  if (type == object_type::kProfile) return Ui::tr("プロファイル");
  if (type == object_type::kAccount) return Ui::tr("アカウント");
  if (type == object_type::kFolder) return Ui::tr("フォルダ");
  if (type == object_type::kBookmark) return Ui::tr("ブックマーク");
  if (type == object_type::kBook) return Ui::tr("アドレスブック");
  if (type == object_type::kEvent) return Ui::tr("イベント");
  return {};
}

// The keys of the "file" page, which every object has.
void AnyObject::Begin(Disk& bag, const QString& type, const QString& name, const QString& draw) {
  bag.Let(kType, type);
  SetName(bag, name);
  SetToolTip(bag, QString());
  SetDraw(bag, draw.isEmpty() ? type : draw);
  SetDefault(bag, false);
  SetSystem(bag, false);
  SetEnabled(bag, false);
  bag.Let(kParent, QString());
}

QDateTime AnyObject::Saved() const {
  return QDateTime::fromString(bag_.Text(kChanged), QStringLiteral("yyyy/MM/dd H:mm:ss"));
}

}  // namespace vorn
