#include "transfer/sasl.h"

#include <QMessageAuthenticationCode>
#include <array>

namespace vorn {

SaslMechanism ChooseMechanism(const QByteArrayList& offered, bool encrypted) {
  const auto offers = [&offered](SaslMechanism mechanism) {
    return offered.contains(MechanismName(mechanism));
  };
  using enum SaslMechanism;
  using Order = std::array<SaslMechanism, 3>;
  const Order order = encrypted ? Order{Plain, Login, CramMd5} : Order{CramMd5, Plain, Login};
  for (const SaslMechanism mechanism : order) {
    if (offers(mechanism)) return mechanism;
  }
  return None;
}

QByteArray MechanismName(SaslMechanism mechanism) {
  switch (mechanism) {
    case SaslMechanism::Plain:
      return "PLAIN";
    case SaslMechanism::Login:
      return "LOGIN";
    case SaslMechanism::CramMd5:
      return "CRAM-MD5";
    default:
      return {};
  }
}

QByteArray SaslResponse(SaslMechanism mechanism, int step, const QByteArray& challenge,
                        const QString& user, const QString& password) {
  switch (mechanism) {
    case SaslMechanism::Plain:
      return '\0' + user.toUtf8() + '\0' + password.toUtf8();
    case SaslMechanism::Login:
      return (step == 0 ? user : password).toUtf8();
    case SaslMechanism::CramMd5:
      return user.toUtf8() + ' ' +
             QMessageAuthenticationCode::hash(challenge, password.toUtf8(), QCryptographicHash::Md5)
                 .toHex();
    default:
      return {};
  }
}

}  // namespace vorn
