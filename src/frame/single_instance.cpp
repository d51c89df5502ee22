#include "frame/single_instance.h"

#include <tuple>

#include "storage/files/private_files.h"

namespace vorn {

SingleInstance::SingleInstance(const QString& appFolder)
    : folder_(appFolder), lock_(appFolder + QStringLiteral("vorn.lock")) {
  lock_.setStaleLockTime(0);  // never by its age: the program runs for days
}

bool SingleInstance::Acquire() {
  if (!MakePrivateFolder(folder_) || !lock_.tryLock()) return false;
  std::ignore = MakePrivate(lock_.fileName());  // it says nothing that others may not know
  return true;
}

}  // namespace vorn
