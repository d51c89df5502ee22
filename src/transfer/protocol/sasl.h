#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <optional>
#include <utility>

#include "transfer/protocol/redaction.h"

namespace vorn {

/// One step of a proof: who answers which challenge, and how many were answered before.
struct SaslStep {
  QByteArray user;
  QByteArray password;
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

/// The mechanism to use of those a server offers, in its own words; null when it has none of them.
/// Over a connection in clear one that does not show the password comes first; over an encrypted
/// one the simplest does.
const SaslMechanism* ChooseMechanism(const QByteArrayList& offered, bool encrypted);

/// One proof of who the user is, the same in POP3 (RFC 5034) and SMTP (RFC 4954).
class SaslExchange {
 public:
  SaslExchange() = default;
  SaslExchange(const SaslMechanism* mechanism, QString user, QString password)
      : mechanism_(mechanism), user_(std::move(user)), password_(std::move(password)) {}

  /// Null when there is nothing to prove by it.
  const SaslMechanism* Mechanism() const { return mechanism_; }
  /// The command that begins it, with a mechanism. With `saysFirst` the answer of one that has no
  /// challenge goes along.
  QByteArray Begin(bool saysFirst);
  /// The line that answers a challenge in base64; nothing when it asks for more than the mechanism
  /// has. What proves the user in it is added to `redaction`.
  std::optional<QByteArray> Answer(const QByteArray& challenge, Redaction& redaction);

 private:
  QByteArray Respond(const QByteArray& challenge);

  const SaslMechanism* mechanism_ = nullptr;
  QString user_;
  QString password_;
  int step_ = 0;
};

}  // namespace vorn
