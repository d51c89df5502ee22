#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <optional>

#include "transfer/protocol/credentials.h"
#include "transfer/protocol/redaction.h"

namespace vorn {

/// One step of a proof: who answers which challenge, and how many were answered before.
struct SaslStep {
  const Credentials& who;
  QByteArray challenge;
  int number = 0;
};

/// How a client proves who it is (RFC 4422). All there are stand in one table.
struct SaslMechanism {
  const char* name;    ///< as it stands in commands
  bool isPlainLogin;   ///< hands over what USER and PASS of POP3 do
  bool hidesPassword;  ///< nobody on the way can read it
  bool speaksFirst;    ///< has no challenge to wait for
  int steps;           ///< responses at most; one to spare for servers that ask again
  QByteArray (*respond)(const SaslStep& step);
};

/// The proof of who the user is, the same in POP3 (RFC 5034) and SMTP (RFC 4954), by the first
/// of the mechanisms that the server does.
class SaslExchange {
 public:
  SaslExchange() = default;
  /// Has the mechanisms, to be tried one after the other, of those that a server offers in its own
  /// words. Over an encrypted connection the simplest comes first.
  /// Over one in clear those that show the password are there only where the server offers none
  /// that does not.
  SaslExchange(const QByteArrayList& offered, bool encrypted, Credentials who);

  /// The one in use; null when there is nothing to prove by.
  const SaslMechanism* Mechanism() const { return mechanisms_.value(0); }
  /// Whether the server has been given a proof by it, right or wrong.
  bool HasResponded() const { return step_ > 0; }
  /// Goes on to the next mechanism, with `hiding` to the next that hides the password. False when
  /// there is none.
  bool TryNext(bool hiding = false);
  /// The command that begins it, with a mechanism. With `saysFirst` the answer of one that has no
  /// challenge goes along, and what proves the user in it is added to `redaction`.
  QByteArray Begin(bool saysFirst, Redaction& redaction);
  /// The line that answers a challenge in base64; nothing when it asks for more than the mechanism
  /// has. What proves the user in it is added to `redaction`.
  std::optional<QByteArray> Answer(const QByteArray& challenge, Redaction& redaction);

 private:
  QByteArray Respond(const QByteArray& challenge, Redaction& redaction);

  QList<const SaslMechanism*> mechanisms_;
  Credentials who_;
  int step_ = 0;
};

}  // namespace vorn
