#include "mail/store/message_bag.h"

namespace vorn {

DatabaseKind MessageBag::Database() const {
  return static_cast<DatabaseKind>(
      bag_.Number(kDatabaseKey, static_cast<qint32>(DatabaseKind::MailByPath)));
}

void MessageBag::SetDatabase(Disk& bag, DatabaseKind kind) {
  bag.Let(kDatabaseKey, static_cast<qint32>(kind));
}

void MessageBag::CopyPlace(Disk& other) const {
  for (const QString& key : {kDatabaseKey, kFile, kPassword}) {
    if (const QVariant value = bag_.Get(key); value.isValid()) other.Let(key, value);
  }
}

QString MessageBag::File(const Context& context) const {
  return bag_.Text(kFile, MailDatabasePath(context));
}

}  // namespace vorn
