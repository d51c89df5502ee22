#include "storage/engine/sole_use.h"

#include "storage/engine/engine_locks.h"
#include "storage/engine/raw_pages.h"

namespace vorn {

SoleUse::SoleUse(const QString& path) {
  UseOwnLocks();
  if (sqlite3_open_v2(path.toUtf8().constData(), &handle_, SQLITE_OPEN_READWRITE, nullptr) !=
      SQLITE_OK) {
    return;
  }
  sqlite3_file* file = EngineFile(handle_);
  if (file == nullptr) return;
  for (const int lock : {SQLITE_LOCK_SHARED, SQLITE_LOCK_EXCLUSIVE}) {
    if (taken_) taken_ = file->pMethods->xLock(file, lock) != SQLITE_BUSY;
  }
}

SoleUse::~SoleUse() {
  if (sqlite3_file* file = EngineFile(handle_)) file->pMethods->xUnlock(file, SQLITE_LOCK_NONE);
  sqlite3_close_v2(handle_);
}

}  // namespace vorn
