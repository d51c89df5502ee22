#include "present/folder_layout.h"

#include "objects/object_loader.h"
#include "objects/object_types.h"

namespace vorn {

FolderLayout GetFolderLayout(Context& context, const QString& folder,
                             const QString& defaultTemplate) {
  FolderLayout layout{defaultTemplate, context.TempFolder};
  if (const DiskPtr own = LoadObject(context, fixed_serial::kLayout)) {
    layout.html = own->Text(folder + QStringLiteral("_html"), layout.html);
    layout.path = PlatformPath(context, own->Text(folder + QStringLiteral("_path"), layout.path));
  }
  if (!layout.path.endsWith(u'/') && !layout.path.endsWith(u'\\')) layout.path += u'/';
  return layout;
}

}  // namespace vorn
