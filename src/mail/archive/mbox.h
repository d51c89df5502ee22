#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QIODevice>
#include <functional>

namespace vorn {

/// Reads an mbox (RFC 4155 and its relatives "mboxrd", "mboxcl" and "mboxcl2") and hands each
/// message to `take`, which returns false to end the reading. A separator is a line that begins
/// with "From " and bears a date, or is "From -", after an empty line and before a header field;
/// where the first line of the file bears no date, none needs one. A "Content-Length" is believed
/// when it leads to a separator or to the end. One ">" is taken off the quoted "From " lines,
/// except in a message of known length in which such a line stands unquoted. Lines get CR LF,
/// unless `MboxEntry` wrote the message, as the end of its separator tells: that is taken as it
/// stands. False when the file cannot be read.
[[nodiscard]] bool ReadMbox(QIODevice& file, const std::function<bool(const QByteArray&)>& take);

/// A message as an entry of an mbox, from which `ReadMbox` gets exactly the same bytes back. The
/// separator (RFC 4155) names the sender's address, "MAILER-DAEMON" for none or one that cannot
/// stand there, and the time in UTC; where that would not give the bytes back, it names neither.
QByteArray MboxEntry(const QByteArray& source, const QByteArray& sender, const QDateTime& time);

/// Whether a text begins with a header field (RFC 5322, section 2.2), behind a byte order mark,
/// empty lines and a quoted separator, which some programs leave.
bool BeginsWithHeaderField(const QByteArray& text);

/// Every bare LF becomes CR LF.
QByteArray WithCrLf(const QByteArray& source);

}  // namespace vorn
