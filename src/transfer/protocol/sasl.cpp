#include "transfer/protocol/sasl.h"

#include <QMessageAuthenticationCode>
#include <algorithm>
#include <utility>

namespace vorn {
namespace {

QByteArray RespondPlain(const SaslStep& step) {  // RFC 4616
  return '\0' + step.who.user.toUtf8() + '\0' + step.who.password.toUtf8();
}

QByteArray RespondLogin(const SaslStep& step) {
  return (step.number == 0 ? step.who.user : step.who.password).toUtf8();
}

QByteArray RespondCramMd5(const SaslStep& step) {  // RFC 2195
  using Code = QMessageAuthenticationCode;
  const QByteArray proof =
      Code::hash(step.challenge, step.who.password.toUtf8(), QCryptographicHash::Md5);
  return step.who.user.toUtf8() + ' ' + proof.toHex();
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

SaslExchange::SaslExchange(const QByteArrayList& offered, bool encrypted, Credentials who)
    : who_(std::move(who)) {
  QList<const SaslMechanism*> hiding;
  for (const SaslMechanism& mechanism : kMechanisms) {
    if (!offered.contains(mechanism.name)) continue;
    mechanisms_.append(&mechanism);
    if (mechanism.hidesPassword) hiding.append(&mechanism);
  }
  if (!encrypted && !hiding.isEmpty()) mechanisms_ = hiding;
}

bool SaslExchange::TryNext(bool hiding) {
  if (!mechanisms_.isEmpty()) mechanisms_.removeFirst();
  if (hiding) mechanisms_.removeIf([](const auto* mechanism) { return !mechanism->hidesPassword; });
  step_ = 0;
  return !mechanisms_.isEmpty();
}

QByteArray SaslExchange::Begin(bool saysFirst, Redaction& redaction) {
  const QByteArray command = QByteArray("AUTH ") + Mechanism()->name;
  if (!saysFirst || !Mechanism()->speaksFirst) return command;
  return command + ' ' + Respond({}, redaction);
}

std::optional<QByteArray> SaslExchange::Answer(const QByteArray& challenge, Redaction& redaction) {
  if (Mechanism() == nullptr || step_ == Mechanism()->steps) return std::nullopt;
  return Respond(QByteArray::fromBase64(challenge), redaction);
}

// In base64. The user's name is no secret, alone or in front of what proves it.
QByteArray SaslExchange::Respond(const QByteArray& challenge, Redaction& redaction) {
  const QByteArray response =
      Mechanism()->respond({.who = who_, .challenge = challenge, .number = step_++});
  const qsizetype name = std::max(response.lastIndexOf(' '), response.lastIndexOf('\0'));
  if (response != who_.user.toUtf8()) redaction.Add(response.sliced(name + 1));
  return response.toBase64();
}

}  // namespace vorn
