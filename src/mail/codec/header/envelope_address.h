#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace vorn {

/// An address as it goes between the angle brackets of MAIL and RCPT.
struct EnvelopeAddress {
  QByteArray path;
  bool needsUtf8 = false;  ///< only a server with SMTPUTF8 (RFC 6531) takes it
};

/// The domain becomes A-labels (UTS #46, RFC 5891), which every server takes; a local part with
/// other characters than ASCII stays as it is, in UTF-8. Nothing when the address can stand in no
/// command: it or its domain is empty or missing, it holds blanks outside of quotes, comments, a
/// route, control characters or angle brackets, or its domain is no name.
std::optional<EnvelopeAddress> ToEnvelope(const QString& address);

/// The address as it stands in a header: with its domain in A-labels where that makes it ASCII,
/// which is all that a header may hold for a server without SMTPUTF8.
QString ToHeaderAddress(const QString& address);

/// Whether two paths lead to one mailbox: domains have no letter case (RFC 5321 section 2.4).
bool IsSameMailbox(QByteArrayView path, QByteArrayView other);

}  // namespace vorn
