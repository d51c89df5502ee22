#include "frame/security_key.h"

#include <QFile>

#include "frame/user_store.h"
#include "mail/identifiers.h"
#include "storage/data_session.h"

namespace vorn {
namespace {

constexpr qsizetype kSeedCharacters = 10;
constexpr qsizetype kKeyCharacters = 14;
const QString kEntry = QStringLiteral("infomation/security");

QString MakeKey(DataSession& data) {
  const QString seed = data.NewSerialID().left(kSeedCharacters) + QStringLiteral("navi");
  return MimeCodec::Digest(seed.toUtf8()).left(kKeyCharacters);
}

}  // namespace

QString SecurityKey(DataSession& data) {
  const auto userStore = UserStore();
  QSettings& store = *userStore;
  const QString kept = store.value(kEntry).toString().left(kKeyCharacters);
  if (!kept.isEmpty()) return kept;
  const QString key = MakeKey(data);
  store.setValue(kEntry, key);
  store.sync();
  if (store.status() != QSettings::NoError) return {};
  QFile::setPermissions(store.fileName(), QFile::ReadOwner | QFile::WriteOwner);
  return key;
}

}  // namespace vorn
