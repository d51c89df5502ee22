#pragma once

#include <QByteArray>
#include <QString>

#include "mail/text_encoding.h"

namespace vorn::MimeCodec {

/// A header field ready to be written, without its last line break: `name` with its colon, a blank
/// and the value. What is not ASCII becomes encoded words (RFC 2047, "B"), each whole in itself;
/// lines are folded at 76 characters with CR LF and a tab. Control characters become blanks.
QByteArray EncodeField(const QByteArray& name, const QString& value, OutputCharset charset);

/// A display name and an address as they stand in an address field: the name is put in quotes when
/// it holds characters that have a meaning there.
QString FormatMailbox(const QString& address, const QString& name);

}  // namespace vorn::MimeCodec
