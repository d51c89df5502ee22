#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <optional>
#include <utility>

#include "transfer/redaction.h"

namespace vorn {

/// How a client proves who it is (RFC 4422).
enum class SaslMechanism { None, Plain, Login, CramMd5 };

/// The mechanism to use of those a server offers, in its own words. Over a connection in clear the
/// one that does not show the password comes first; over an encrypted one the simplest does.
SaslMechanism ChooseMechanism(const QByteArrayList& offered, bool encrypted);

/// The name of a mechanism as it stands in commands.
QByteArray MechanismName(SaslMechanism mechanism);

/// One proof of who the user is, the same in POP3 (RFC 5034) and SMTP (RFC 4954). PLAIN is RFC
/// 4616, CRAM-MD5 is RFC 2195.
class SaslExchange {
 public:
  SaslExchange() = default;
  SaslExchange(SaslMechanism mechanism, QString user, QString password)
      : mechanism_(mechanism), user_(std::move(user)), password_(std::move(password)) {}

  SaslMechanism Mechanism() const { return mechanism_; }
  /// The command that begins it. With `saysFirst` the answer of a mechanism that has no challenge
  /// goes along.
  QByteArray Begin(bool saysFirst);
  /// The line that answers a challenge in base64; nothing when it asks for more than the mechanism
  /// has. What proves the user in it is added to `redaction`.
  std::optional<QByteArray> Answer(const QByteArray& challenge, Redaction& redaction);

 private:
  QByteArray Response(const QByteArray& challenge) const;

  SaslMechanism mechanism_ = SaslMechanism::None;
  QString user_;
  QString password_;
  int step_ = 0;
};

}  // namespace vorn
