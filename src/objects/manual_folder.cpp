#include "objects/manual_folder.h"

#include "objects/object_types.h"
#include "objects/save_object.h"
#include "storage/ui.h"

namespace vorn {

Result<QString> MakeManualFolder(Context& context, const QString& name) {
  const auto folder = std::make_shared<Disk>(context.Data.NewSerialID());
  folder->Let(QStringLiteral("FormName"), object_type::kFolder);
  folder->Let(QStringLiteral("Object"), name);
  folder->Let(QStringLiteral("Draw"), QStringLiteral("static"));
  for (const char16_t* key : {u"Default", u"System", u"Enabled", u"SqlUse"}) {
    folder->Let(QString::fromUtf16(key), false);
  }
  const QString fault = ValidateObject(context.Objects, *folder);
  if (!fault.isEmpty()) return StorageError{StorageError::Kind::Other, fault};
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, *folder);
  if (!saved) return saved.Error().Behind(Ui::tr("保存できませんでした。"));
  context.Objects.Add(folder);
  return folder->SerialID();
}

}  // namespace vorn
