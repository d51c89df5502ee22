#include "frame/single_instance.h"

#include <QDir>

namespace vorn {

SingleInstance::SingleInstance(const QString& appFolder)
    : folder_(appFolder), lock_(appFolder + QStringLiteral("vorn.lock")) {
  lock_.setStaleLockTime(0);  // never by its age: the program runs for days
}

bool SingleInstance::Acquire() {
  return QDir().mkpath(folder_) && lock_.tryLock();
}

}  // namespace vorn
