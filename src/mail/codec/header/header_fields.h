#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QByteArrayView>

namespace vorn::MimeCodec {

/// What ends the lines of a message: LF, or with a few old programs a lone CR, also where the last
/// line was completed on the way.
char LineEnd(QByteArrayView source);

/// Looks a header field up in the header block that begins at byte `start` of a source (RFC 5322
/// section 2.2; a bare LF ends a line too). `name` is given with its colon and matched without
/// regard to case. Returns the whole field: the name as written, the colon, and the body with its
/// continuation lines joined; nothing when absent. `end` is the last byte to look at, -1 meaning
/// the end of the source. The block ends at the first empty line.
QByteArray HeaderField(QByteArrayView source, QByteArrayView name, qsizetype start = 0,
                       qsizetype end = -1);

/// All fields of that name, of which there should be but one.
QByteArrayList HeaderFields(QByteArrayView source, QByteArrayView name);

/// Every field of the header block, in order and in the same form.
QByteArrayList AllHeaders(QByteArrayView source);

/// The raw value of a field: what follows a name of that length, without blanks around it.
QByteArray HeaderValue(QByteArrayView field, qsizetype nameLength);

/// The offset of the first byte after the header block at `start`, its closing empty line included.
qsizetype HeaderBlockEnd(QByteArrayView source, qsizetype start = 0, qsizetype end = -1);

}  // namespace vorn::MimeCodec
