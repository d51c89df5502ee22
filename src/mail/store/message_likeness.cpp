#include "mail/store/message_likeness.h"

#include <QRegularExpression>
#include <QUrl>

#include "mail/codec/header/address.h"
#include "mail/codec/header/header_decoding.h"
#include "mail/codec/header/header_fields.h"
#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString Value(QByteArrayView source, QByteArrayView name) {
  return MimeCodec::DecodeHeader(MimeCodec::HeaderField(source, name), name.size()).trimmed();
}

QString ListAddress(QByteArrayView source) {
  static const QRegularExpression post(QStringLiteral("<mailto:([^>?]+)[^>]*>"),
                                       QRegularExpression::CaseInsensitiveOption);
  const QString found = post.match(Value(source, "List-Post:")).captured(1).trimmed();
  const QString address = QUrl::fromPercentEncoding(found.toUtf8());
  return IsMailAddress(address) ? address : QString();
}

}  // namespace

MessageLikeness LikenessOf(const QString& addressLines, QByteArrayView source) {
  MessageLikeness likeness;
  for (const AddressEntry& entry : EntriesOfKind(addressLines, u"from")) {
    if (!IsMailAddress(entry.address)) continue;
    likeness.sender = entry.address;
    likeness.name = entry.displayName.isEmpty() ? entry.address : entry.displayName;
    break;
  }
  likeness.gathering = ListAddress(source);
  if (!addressLines.contains(likeness.gathering, Qt::CaseInsensitive)) likeness.gathering.clear();
  if (likeness.gathering.isEmpty()) {
    likeness.gathering = likeness.sender;
    return likeness;
  }
  const QString id = Value(source, "List-Id:");
  const QString words = id.left(id.indexOf(u'<')).remove(u'"').trimmed();
  likeness.name = words.isEmpty() ? likeness.gathering : words;
  return likeness;
}

}  // namespace vorn
