#include "objects/manual_folder.h"

#include "objects/object_types.h"
#include "objects/save_object.h"
#include "storage/ui.h"

namespace vorn {

QString MakeManualFolder(Context& context, const QString& name, QString* error) {
  const auto folder = std::make_shared<Disk>(context.Data.NewSerialID());
  folder->Let(QStringLiteral("FormName"), object_type::kFolder);
  folder->Let(QStringLiteral("Object"), name);
  folder->Let(QStringLiteral("Draw"), QStringLiteral("static"));
  for (const char16_t* key : {u"Default", u"System", u"Enabled", u"SqlUse"}) {
    folder->Let(QString::fromUtf16(key), false);
  }
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
