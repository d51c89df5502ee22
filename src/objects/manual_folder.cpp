#include "objects/manual_folder.h"

#include "objects/any_object.h"
#include "objects/folder_object.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "storage/ui.h"

namespace vorn {

QString MakeManualFolder(Context& context, const QString& name, QString* error) {
  const auto folder = std::make_shared<Disk>(context.Data.NewSerialID());
  AnyObject::Begin(*folder, object_type::kFolder, name);
  FolderObject::SetFilledByHand(*folder, true);
  FolderObject::SetConditions(*folder, false, {}, {});
  *error = ValidateObject(context.Objects, *folder);
  if (!error->isEmpty()) return {};
  if (!SaveObject(context, DatabaseKind::Profile, *folder)) {
    *error = Ui::tr("保存できませんでした。") + context.Data.LastError().text;
    return {};
  }
  context.Objects.Add(folder);
  return folder->SerialID();
}

}  // namespace vorn
