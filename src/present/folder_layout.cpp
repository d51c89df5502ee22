#include "present/folder_layout.h"

#include "objects/layouts_object.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/settings.h"
#include "present/ready_layouts.h"

namespace vorn {
FolderLayout GetFolderLayout(Context& context, const SerialId& folder,
                             const QString& defaultTemplate) {
  FolderLayout layout{SharedTemplate(context, folder, defaultTemplate), context.TempFolder};
  if (const DiskPtr own = LoadObject(context, fixed_serial::kLayout)) {
    layout.html = LayoutsObject(*own).Html(folder, layout.html);
    layout.path = PlatformPath(context, LayoutsObject(*own).Path(folder, layout.path));
  }
  if (!layout.path.endsWith(u'/') && !layout.path.endsWith(u'\\')) layout.path += u'/';
  return layout;
}

// Not stored as text, so that folders have the form that the present version gives it.
QString SharedTemplate(Context& context, const SerialId& folder, const QString& defaultTemplate) {
  const QString id = SharedLayout(context);
  const QList<ReadyLayout> all = ReadyLayouts(folder, Settings(context).Rows());
  for (const ReadyLayout& layout : all) {
    if (layout.id == id && layout.id != all.first().id) return layout.html;
  }
  return defaultTemplate;
}

QString SharedLayout(Context& context) {
  const DiskPtr layouts = LoadObject(context, fixed_serial::kLayout);
  return layouts == nullptr ? QString() : LayoutsObject(*layouts).Shared();
}

qsizetype CountOwnLayouts(Context& context) {
  const DiskPtr layouts = LoadObject(context, fixed_serial::kLayout);
  return layouts == nullptr ? 0 : LayoutsObject(*layouts).CountHtml();
}

Result<> ShareLayout(Context& context, const QString& id, OwnLayouts own) {
  return ChangeObject(context, fixed_serial::kLayout, [&](Disk& layouts) {
    LayoutsObject::SetShared(layouts, id);
    if (own == OwnLayouts::Removed) LayoutsObject::RemoveAllHtml(layouts);
  });
}

}  // namespace vorn
