#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace vorn {

/// How a client proves who it is (RFC 4422).
enum class SaslMechanism { None, Plain, Login, CramMd5 };

/// The mechanism to use of those a server offers, in its own words. Over a connection in clear the
/// one that does not show the password comes first; over an encrypted one the simplest does.
SaslMechanism ChooseMechanism(const QByteArrayList& offered, bool encrypted);

QByteArray MechanismName(SaslMechanism mechanism);

/// The answer to a server's `challenge` (both without base64). `step` counts from 0; PLAIN (RFC
/// 4616) and LOGIN answer their first step without a challenge. CRAM-MD5 is RFC 2195.
QByteArray SaslResponse(SaslMechanism mechanism, int step, const QByteArray& challenge,
                        const QString& user, const QString& password);

}  // namespace vorn
