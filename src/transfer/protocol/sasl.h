#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <memory>
#include <optional>

#include "objects/endpoint.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/protocol/redaction.h"
#include "transfer/protocol/sasl_proof.h"

namespace vorn {

/// How a client proves who it is (RFC 4422). All there are stand in one table.
struct SaslMechanism {
  const char* name;          ///< as it stands in commands
  bool isPlainLogin;         ///< hands over what USER and PASS of POP3 do: whom it fits, they fit
  bool hidesPassword;        ///< nobody on the way can read it
  bool needsStoredPassword;  ///< a server that keeps passwords scrambled refuses right ones
  bool isForSome;            ///< a server may list it, and keep what it needs for some users alone
  bool (*fits)(const Credentials& who);  ///< whether these are what it proves the user by
  std::unique_ptr<SaslProof> (*begin)(const Credentials& who);
};

/// The proof of who the user is, the same in POP3 (RFC 5034) and SMTP (RFC 4954), by the first
/// of the mechanisms that the server does and the credentials fit.
class SaslExchange {
 public:
  SaslExchange() = default;
  /// Has the mechanisms that fit `who`, to be tried one after the other, of those that a server
  /// offers in its own words.
  /// Over a connection in clear those that show the password are there only where the server offers
  /// none that does not.
  SaslExchange(const QByteArrayList& offered, bool encrypted, Credentials who);

  /// Whether the plain login fits, and with it APOP (RFC 1939 section 7).
  static bool FitsPlainLogin(const Credentials& who);
  /// The one in use; null when there is nothing to prove by.
  const SaslMechanism* Mechanism() const { return mechanisms_.value(0); }
  /// Whether a refusal may mean the mechanism and not the password: the server has no proof yet, or
  /// may have nothing to compare it with, and nobody on the way can have had it refused.
  bool MayBeMissing() const { return !hasProved_ || (isEncrypted_ && Mechanism()->isForSome); }
  /// Goes on to the next mechanism, with `hiding` to the next that hides the password. False when
  /// there is none.
  bool TryNext(bool hiding = false);
  /// The command that begins it, with a mechanism. With `saysFirst` the response of one that has no
  /// challenge goes along, and what proves the user in it is added to `redaction`.
  QByteArray Begin(bool saysFirst, Redaction& redaction);
  /// The line that answers a challenge in base64; nothing when the server asks what the mechanism
  /// does not: the login is `Broken`. Over an encrypted connection, where the server is known, the
  /// line cancels a mechanism by which nothing was proved, and the server refuses it. What proves
  /// the user in it is added to `redaction`.
  std::optional<QByteArray> Answer(const QByteArray& challenge, Redaction& redaction);
  /// Whether a server that lets the user in now is believed; else the login is `Broken`.
  bool TrustsServer() const { return proof_ == nullptr || proof_->TrustsServer(); }
  /// The failure that it is when a server does not keep to the mechanism. No other is tried: it may
  /// not be the user's server.
  PopFailure Broken(const QByteArray& reply, const Redaction& redaction) const;
  /// The failure that it is when a server refuses the login with that reply.
  PopFailure Refused(const QByteArray& reply, const Redaction& redaction) const;

 private:
  QByteArray Say(const SaslResponse& response, Redaction& redaction);

  QList<const SaslMechanism*> mechanisms_;
  Credentials who_;
  std::unique_ptr<SaslProof> proof_;     // of the mechanism in use, once it has begun
  std::optional<SaslResponse> initial_;  // that waits to be asked for
  bool hasProved_ = false;
  bool isEncrypted_ = false;
  bool isCancelled_ = false;
};

}  // namespace vorn
