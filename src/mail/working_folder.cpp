#include "mail/working_folder.h"

#include <tuple>

#include "mail/attachment_files.h"
#include "storage/files/private_files.h"

namespace vorn {

QString WorkingFolder::PathFor(const QString& name) {
  if (folder_ == nullptr) {
    std::ignore =
        MakePrivateFolder(context_.TempFolder);  // without it that in it is missing as well
    folder_ = std::make_unique<QTemporaryDir>(context_.TempFolder + QStringLiteral("clip_XXXXXX"));
  }
  return FreePath(folder_->path(), name);
}

}  // namespace vorn
