#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "mail/codec/charset/text_encoding.h"

namespace vorn::MimeCodec {

/// A header field of running text ready to be written, without its last line break: `name` with its
/// colon, a blank and the value. What is not ASCII becomes encoded words (RFC 2047, "B"), each
/// whole in itself; lines are folded at 76 characters with CR LF and a tab. Text that has to be
/// folded is encoded whole, since a reader would take the tab for a part of it. Control characters
/// become blanks.
QByteArray EncodeField(const QByteArray& name, const QString& value, OutputCharset charset);

/// A text as the name of a field (RFC 5322 section 2.2), without a colon: what cannot stand in one
/// becomes "-".
QByteArray FieldName(const QString& text);

/// A text as one encoded word without regard to its length; as it is when it is plain ASCII.
QByteArray EncodeWord(const QString& text, OutputCharset charset);

/// An address and its display name, which may be empty.
struct Mailbox {
  QString address;
  QString name;
};

/// An address field in the same form: the mailboxes separated by commas. A name that is not ASCII
/// is encoded whole; another one is put in quotes when it holds characters that have a meaning
/// there.
QByteArray EncodeAddressField(const QByteArray& name, const QList<Mailbox>& mailboxes,
                              OutputCharset charset);

}  // namespace vorn::MimeCodec
