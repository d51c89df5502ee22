#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// How a folder's pages look and where they are written.
struct FolderLayout {
  QString html;  ///< the page template
  QString path;  ///< the page folder, a platform path ending with its separator
};

/// The folder's own layout from the object "layout", or the given defaults.
FolderLayout GetFolderLayout(Context& context, const QString& folder,
                             const QString& defaultTemplate);

}  // namespace vorn
