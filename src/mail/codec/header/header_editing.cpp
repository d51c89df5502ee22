#include "mail/codec/header/header_editing.h"

#include "mail/codec/header/header_fields.h"

namespace vorn::MimeCodec {

QByteArray RemoveField(const QByteArray& source, QByteArrayView name) {
  const qsizetype end = HeaderBlockEnd(source);
  QByteArray kept;
  kept.reserve(source.size());
  bool removing = false;
  for (qsizetype at = 0; at < end;) {
    const qsizetype found = source.indexOf('\n', at);
    const qsizetype next = found < 0 || found >= end ? end : found + 1;
    const bool continues = source[at] == ' ' || source[at] == '\t';
    if (!continues) {
      removing = !HeaderField(source, name, at, next - 1).isNull();
    }
    if (!removing) kept += source.sliced(at, next - at);
    at = next;
  }
  return kept + source.sliced(end);
}

QByteArray InsertFields(const QByteArray& source, const QByteArray& fields) {
  return fields + source;
}

}  // namespace vorn::MimeCodec
