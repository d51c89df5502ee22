#include "mail/store/message_identity.h"

#include <QtEndian>
#include <algorithm>

#include "mail/codec/header/header_fields.h"
#include "storage/engine/source_digest.h"

namespace vorn {
namespace {

bool IsNote(const QByteArray& field) {
  static const QByteArrayList names = {
      "status:",         "x-status:", "x-keywords:",       "x-uid:",
      "x-uidl:",         "x-imap:",   "x-mozilla-status:", "x-mozilla-status2:",
      "x-mozilla-keys:", "lines:",    "content-length:"};
  return std::any_of(names.begin(), names.end(), [&field](const QByteArray& name) {
    return qstrnicmp(field.constData(), name.constData(), static_cast<size_t>(name.size())) == 0;
  });
}

}  // namespace

QByteArrayView BodyOf(const QByteArray& message) {
  QByteArrayView body = QByteArrayView(message).sliced(MimeCodec::HeaderBlockEnd(message));
  while (body.endsWith('\n') || body.endsWith('\r')) body.chop(1);
  return body;
}

QByteArrayList FieldsOf(const QByteArray& message) {
  QByteArrayList fields = MimeCodec::AllHeaders(message);
  fields.removeIf([](const QByteArray& field) { return IsNote(field); });
  return fields;
}

bool HasBody(const QByteArray& message) {
  QByteArray plain = message;
  const qsizetype end = plain.replace("\r\n", "\n").indexOf("\n\n");
  return end >= 0 && !plain.sliced(end).trimmed().isEmpty();
}

bool HasHole(const QByteArray& message) {
  constexpr qsizetype kLeast = 512;  // a sector of a disk
  return message.contains('\0') && message.contains(QByteArray(kLeast, '\0'));
}

bool IsSameButForNotes(const QByteArray& message, const QByteArray& other) {
  return message == other || (IsUnique(message) && BodyOf(message) == BodyOf(other) &&
                              FieldsOf(message) == FieldsOf(other));
}

bool IsUnique(const QByteArray& header) {
  return MimeCodec::HeaderField(header, "MESSAGE-ID:").contains('@') &&
         !MimeCodec::HeaderField(header, "RECEIVED:").isEmpty();
}

std::optional<qint64> MessageIdentity(const QByteArray& message) {
  if (!IsUnique(message)) return std::nullopt;
  const QByteArrayView body = BodyOf(message);
  const QByteArray digest = SourceDigest(FieldsOf(message).join('\n') +
                                         SourceDigest(QByteArray(body.data(), body.size())));
  return qFromLittleEndian<qint64>(digest.constData());
}

}  // namespace vorn
