#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <optional>

namespace vorn {

/// The fields of a message's header, unfolded, without those that servers and mail programs write
/// beside the sender's and change there (read flags, positions, lengths).
QByteArrayList FieldsOf(const QByteArray& message);
/// What follows the header, without line breaks at its end.
QByteArrayView BodyOf(const QByteArray& message);

/// Whether a stretch of a message is missing, for which servers with damaged files give zeros.
bool HasHole(const QByteArray& message);

/// Whether anything but blanks follows the header's empty line.
bool HasBody(const QByteArray& message);

/// Whether two messages are the same to the byte, or, where their header is unique, but for such
/// fields and for empty lines at the end.
bool IsSameButForNotes(const QByteArray& message, const QByteArray& other);

/// Whether hardly two messages have this header: it has a Message-ID, and a trace field (RFC 5321
/// section 4.4), which each delivery writes anew.
bool IsUnique(const QByteArray& header);

/// A number that messages have in common which are the same but for such fields. Nothing for one
/// whose header is not unique: two of those may be two messages.
std::optional<qint64> MessageIdentity(const QByteArray& message);

}  // namespace vorn
