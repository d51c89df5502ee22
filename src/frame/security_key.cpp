#include "frame/security_key.h"

#include <QDir>
#include <QFileInfo>

#include "frame/user_store.h"
#include "mail/identifiers.h"
#include "storage/data_session.h"
#include "storage/file_lock.h"
#include "storage/private_files.h"

namespace vorn {
namespace {

constexpr qsizetype kSeedCharacters = 10;
constexpr qsizetype kKeyCharacters = 14;
constexpr int kWaitMs = 10000;
const QString kEntry = QStringLiteral("infomation/security");

QString MakeKey(DataSession& data) {
  const QString seed = data.NewSerialID().left(kSeedCharacters) + QStringLiteral("navi");
  return MimeCodec::Digest(seed.toUtf8()).left(kKeyCharacters);
}

QString KeptKey(const QSettings& store) {
  return store.value(kEntry).toString().left(kKeyCharacters);
}

}  // namespace

// Two first starts at once must end with one key: what one makes under another key, the other could
// never open.
QString SecurityKey(DataSession& data) {
  const auto userStore = UserStore();
  QSettings& store = *userStore;
  if (const QString kept = KeptKey(store); !kept.isEmpty()) return kept;
  const QFileInfo file(store.fileName());
  if (!MakePrivateFolder(file.path())) return {};
  FileLock lock(file.dir().filePath(QStringLiteral("vorn-key.lock")));
  if (lock.Take(FileLock::Kind::Exclusive, kWaitMs) != FileLock::Result::Taken) return {};
  store.sync();
  if (const QString kept = KeptKey(store); !kept.isEmpty()) return kept;
  // Written in place of a private file, the settings stay private from their first moment.
  QFile empty(store.fileName());
  if (!empty.exists() && !OpenPrivate(empty, QIODevice::WriteOnly)) return {};
  empty.close();
  const QString key = MakeKey(data);
  store.setValue(kEntry, key);
  store.sync();
  if (store.status() != QSettings::NoError) return {};
  MakePrivate(store.fileName());
  return key;
}

}  // namespace vorn
