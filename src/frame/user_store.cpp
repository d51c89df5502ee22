#include "frame/user_store.h"

#include <QFileInfo>

#include "storage/files/file_lock.h"
#include "storage/files/private_files.h"

namespace vorn {
namespace {

constexpr int kStoreWaitMs = 10000;

std::unique_ptr<QSettings> Store(const QString& name) {
  return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                     QStringLiteral("Vorn"), name);
}

}  // namespace

QString UserStoreLock() {
  const auto neighbour = Store(QStringLiteral(".none"));
  return QFileInfo(neighbour->fileName()).path() + QStringLiteral("/vorn-key.lock");
}

// The store looks at its file's size and time after it has read it. One that another program writes
// in between it takes for read: it would never see what is in it, and write over it.
std::unique_ptr<QSettings> UserStore() {
  const QString path = UserStoreLock();
  FileLock lock(path);
  if (MakePrivateFolder(QFileInfo(path).path())) lock.Take(FileLock::Kind::Shared, kStoreWaitMs);
  return Store(QStringLiteral(".VORN"));
}

}  // namespace vorn
