#include "transfer/protocol/sasl.h"

#include <QMessageAuthenticationCode>

namespace vorn {
namespace {

QByteArray RespondPlain(const SaslStep& step) {  // RFC 4616
  return '\0' + step.user + '\0' + step.password;
}

QByteArray RespondLogin(const SaslStep& step) {
  return step.number == 0 ? step.user : step.password;
}

QByteArray RespondCramMd5(const SaslStep& step) {  // RFC 2195
  using Code = QMessageAuthenticationCode;
  return step.user + ' ' +
         Code::hash(step.challenge, step.password, QCryptographicHash::Md5).toHex();
}

// The simplest first.
constexpr SaslMechanism kMechanisms[] = {
    {.name = "PLAIN",
     .isPlainLogin = true,
     .hidesPassword = false,
     .speaksFirst = true,
     .steps = 2,
     .respond = RespondPlain},
    {.name = "LOGIN",
     .isPlainLogin = false,
     .hidesPassword = false,
     .speaksFirst = false,
     .steps = 2,
     .respond = RespondLogin},
    {.name = "CRAM-MD5",
     .isPlainLogin = false,
     .hidesPassword = true,
     .speaksFirst = false,
     .steps = 2,
     .respond = RespondCramMd5},
};

}  // namespace

QList<const SaslMechanism*> UsableMechanisms(const QByteArrayList& offered, bool encrypted) {
  QList<const SaslMechanism*> simple;
  QList<const SaslMechanism*> hiding;
  for (const SaslMechanism& mechanism : kMechanisms) {
    if (!offered.contains(mechanism.name)) continue;
    simple.append(&mechanism);
    if (mechanism.hidesPassword) hiding.append(&mechanism);
  }
  return encrypted || hiding.isEmpty() ? simple : hiding;
}

bool SaslExchange::TryNext(bool hiding) {
  if (!mechanisms_.isEmpty()) mechanisms_.removeFirst();
  if (hiding) mechanisms_.removeIf([](const auto* mechanism) { return !mechanism->hidesPassword; });
  step_ = 0;
  return !mechanisms_.isEmpty();
}

QByteArray SaslExchange::Begin(bool saysFirst) {
  const QByteArray command = QByteArray("AUTH ") + Mechanism()->name;
  if (!saysFirst || !Mechanism()->speaksFirst) return command;
  return command + ' ' + Respond({}).toBase64();
}

std::optional<QByteArray> SaslExchange::Answer(const QByteArray& challenge, Redaction& redaction) {
  if (Mechanism() == nullptr || step_ == Mechanism()->steps) return std::nullopt;
  const QByteArray response = Respond(QByteArray::fromBase64(challenge));
  redaction.Add(response.sliced(response.lastIndexOf(' ') + 1));
  return response.toBase64();
}

QByteArray SaslExchange::Respond(const QByteArray& challenge) {
  return Mechanism()->respond({.user = user_.toUtf8(),
                               .password = password_.toUtf8(),
                               .challenge = challenge,
                               .number = step_++});
}

}  // namespace vorn
