#include "frame/security_key.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <array>
#include <tuple>

#include "frame/user_store.h"
#include "storage/files/file_lock.h"
#include "storage/files/private_files.h"

namespace vorn {
namespace {

constexpr qsizetype kKeyCharacters = 14;
constexpr int kKeyWaitMs = 10000;
const QString kKeyEntry = QStringLiteral("infomation/security");

// From the system's random source, six bits for each character.
QString MakeKey() {
  std::array<quint32, 4> random{};
  QRandomGenerator::system()->fillRange(random.data(), random.size());
  const QByteArray bytes(reinterpret_cast<const char*>(random.data()), sizeof random);
  return QString::fromLatin1(bytes.toBase64(QByteArray::Base64UrlEncoding)).left(kKeyCharacters);
}

QString KeptKey(const QSettings& store) {
  return store.value(kKeyEntry).toString().left(kKeyCharacters);
}

}  // namespace

// Two first starts at once must end with one key: what one makes under another key, the other could
// never open.
QString SecurityKey() {
  const auto userStore = UserStore();
  QSettings& store = *userStore;
  if (const QString kept = KeptKey(store); !kept.isEmpty()) return kept;
  const QFileInfo file(store.fileName());
  if (!MakePrivateFolder(file.path())) return {};
  FileLock lock(UserStoreLock());
  if (lock.Take(FileLock::Kind::Exclusive, kKeyWaitMs) != FileLock::Result::Taken) return {};
  store.sync();
  if (const QString kept = KeptKey(store); !kept.isEmpty()) return kept;
  // Written in place of a private file, the settings stay private from their first moment.
  QFile empty(store.fileName());
  if (!empty.exists() && !OpenPrivate(empty, QIODevice::WriteOnly)) return {};
  empty.close();
  const QString key = MakeKey();
  store.setValue(kKeyEntry, key);
  store.sync();
  if (store.status() != QSettings::NoError) return {};
  std::ignore = MakePrivate(store.fileName());  // as above; some systems know no rights
  return key;
}

}  // namespace vorn
