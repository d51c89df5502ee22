#include "objects/manual_folder.h"

#include "objects/any_object.h"
#include "objects/folder_object.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "storage/ui.h"

namespace vorn {

Result<SerialId> MakeManualFolder(Context& context, const QString& name) {
  const auto folder = std::make_shared<Disk>(context.Data.NewSerialID());
  AnyObject::Begin(*folder, object_type::kFolder, name);
  AnyObject::SetEnabled(*folder, true);
  FolderObject::SetFilledByHand(*folder, true);
  FolderObject::SetConditions(*folder, false, {}, {});
  const Result<> valid = ValidateObject(context.Objects, *folder);
  if (!valid) return valid.Error();
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, *folder);
  if (!saved) return saved.Error().Behind(Ui::tr("保存できませんでした。"));
  context.Objects.Add(folder);
  return folder->Serial();
}

}  // namespace vorn
