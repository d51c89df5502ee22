#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "objects/endpoint.h"

namespace vorn {

/// Keeps what proves who the user is out of every text that is logged or shown. A server may send
/// back whatever it was sent, so its words pass through here before anyone sees them.
///
/// A secret is found as it is and in base64 (at any place of a longer text, padded or not, of
/// either alphabet) and hexadecimal, without regard to letter case, also percent-encoded, torn by
/// blanks or line breaks, and in parts of `kPart` characters or more.
class Redaction {
 public:
  Redaction() = default;
  /// Knows the password in every form, and the user in the forms in which a login gives him out;
  /// his plain name is no secret.
  explicit Redaction(const Credentials& who);

  /// Adds what was sent to prove the user, such as the answer to a challenge.
  void Add(const QByteArray& secret);
  /// A server's reply as it may stand in a log: one line of readable length without secrets.
  QString Words(const QByteArray& reply) const;
  /// A sentence for the user with the server's words behind it.
  QString WithReply(const QString& sentence, const QByteArray& reply) const;

 private:
  void AddForm(const QByteArray& form);
  void AddBase64(const QByteArray& secret);
  QByteArray Cleaned(const QByteArray& reply) const;

  QList<QByteArray> forms_;  // without blanks, in lower case
};

}  // namespace vorn
