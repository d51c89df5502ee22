#include "objects/folder_object.h"

#include "objects/any_object.h"
#include "objects/object_types.h"

namespace vorn {

void FolderObject::SetConditions(Disk& bag, bool usesSql, const QString& sql,
                                 const QString& conditions) {
  bag.Let(kSql, sql);
  bag.Let(kSqlUse, usesSql);
  bag.Let(kConditions, conditions);
}

bool FolderObject::IsFilledByHand() const {
  return AnyObject(bag_).Is(object_type::kFolder) &&
         AnyObject(bag_).Draw().contains(object_filter::kByHand);
}

bool FolderObject::ShowsWhatIsFiled() const {
  return IsFilledByHand() && !UsesSql() && Conditions().isEmpty();
}

void FolderObject::SetFilledByHand(Disk& bag, bool isByHand) {
  AnyObject::SetDraw(bag, isByHand ? object_filter::kByHand : object_filter::kByConditions);
}

}  // namespace vorn
