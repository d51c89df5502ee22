#pragma once

#include <QString>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// How a folder's pages look and where they are written.
struct FolderLayout {
  QString html;  ///< the page template
  QString path;  ///< the page folder, a platform path ending with its separator
};

/// The folder's own layout from the object "layout", or the one that the profile's folders share,
/// or the given default.
FolderLayout GetFolderLayout(Context& context, const SerialId& folder,
                             const QString& defaultTemplate);

/// The template of a folder that has none of its own.
QString SharedTemplate(Context& context, const SerialId& folder, const QString& defaultTemplate);
/// The `ReadyLayout` (its `id`) of all folders that have none of their own; empty for the default
/// one.
QString SharedLayout(Context& context);
/// How many folders have a template of their own.
qsizetype CountOwnLayouts(Context& context);
enum class OwnLayouts { Kept, Removed };
/// Changes what `SharedLayout` gives. When that cannot be stored, it is as it was.
Result<> ShareLayout(Context& context, const QString& id, OwnLayouts own);

}  // namespace vorn
