#include "transfer/sasl.h"

#include <QMessageAuthenticationCode>
#include <array>

namespace vorn {
namespace {

constexpr int kMostSteps = 2;  // of any mechanism

}  // namespace

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

QByteArray SaslExchange::Begin(bool saysFirst) {
  const QByteArray command = "AUTH " + MechanismName(mechanism_);
  if (!saysFirst || mechanism_ != SaslMechanism::Plain) return command;
  ++step_;
  return command + ' ' + Response({}).toBase64();
}

std::optional<QByteArray> SaslExchange::Answer(const QByteArray& challenge, Redaction& redaction) {
  if (step_ == kMostSteps) return std::nullopt;
  const QByteArray response = Response(QByteArray::fromBase64(challenge));
  ++step_;
  redaction.Add(response.sliced(response.lastIndexOf(' ') + 1));
  return response.toBase64();
}

QByteArray SaslExchange::Response(const QByteArray& challenge) const {
  using enum SaslMechanism;
  switch (mechanism_) {
    case Plain:
      return '\0' + user_.toUtf8() + '\0' + password_.toUtf8();
    case Login:
      return (step_ == 0 ? user_ : password_).toUtf8();
    case CramMd5:
      return user_.toUtf8() + ' ' +
             QMessageAuthenticationCode::hash(challenge, password_.toUtf8(),
                                              QCryptographicHash::Md5)
                 .toHex();
    default:
      return {};
  }
}

}  // namespace vorn
