#include "transfer/protocol/scram_proof.h"

#include <unicode/usprep.h>

#include <QMessageAuthenticationCode>
#include <QPasswordDigestor>
#include <QRandomGenerator>
#include <array>
#include <utility>

namespace vorn {
namespace {

constexpr QCryptographicHash::Algorithm kHash = QCryptographicHash::Sha256;
constexpr quint64 kKeyBytes = 32;
// "n,,": no channel binding, and nobody else's name (RFC 5802 section 7).
const QByteArray kBindingHeader = "n,,";
// Fewer let whoever listens guess the password (RFC 7677 section 4); more would keep the windows
// waiting for longer than some tenths of a second, at a server's word.
constexpr int kLeastIterations = 4096;
constexpr int kMostIterations = 150000;

QByteArray Code(const QByteArray& key, const QByteArray& message) {
  return QMessageAuthenticationCode::hash(message, key, kHash);
}

// No character becomes more than so many by compatibility (NFKC).
constexpr qsizetype kLongestForm = 18;

// As both sides write a name or a password before they compare it (SASLprep, RFC 4013). One that it
// has no form for is taken as it is: a server that let it be chosen does the same.
QString Prepared(const QString& text) {
  UErrorCode status = U_ZERO_ERROR;
  UStringPrepProfile* profile = usprep_openByType(USPREP_RFC4013_SASLPREP, &status);
  if (U_FAILURE(status)) return text.normalized(QString::NormalizationForm_KC);
  QString prepared(text.size() * kLongestForm + 1, Qt::Uninitialized);
  const int32_t length = usprep_prepare(
      profile, reinterpret_cast<const UChar*>(text.utf16()), static_cast<int32_t>(text.size()),
      reinterpret_cast<UChar*>(prepared.data()), static_cast<int32_t>(prepared.size()),
      USPREP_ALLOW_UNASSIGNED, nullptr, &status);
  usprep_close(profile);
  return U_FAILURE(status) ? text : prepared.first(length);
}

struct ServerFirst {
  QByteArray nonce;
  QByteArray salt;
  int iterations = 0;
};

// "r=...,s=...,i=..." in this order; extensions may follow, one before them would have to be known.
std::optional<ServerFirst> Read(const QByteArray& message) {
  const QList<QByteArray> fields = message.split(',');
  if (fields.size() < 3) return std::nullopt;
  constexpr std::array<const char*, 3> kNames = {"r=", "s=", "i="};
  for (size_t field = 0; field < kNames.size(); ++field) {
    if (!fields[static_cast<qsizetype>(field)].startsWith(kNames[field])) return std::nullopt;
  }
  const auto salt =
      QByteArray::fromBase64Encoding(fields[1].sliced(2), QByteArray::AbortOnBase64DecodingErrors);
  if (!salt || salt.decoded.isEmpty()) return std::nullopt;
  // What is no number is 0.
  return ServerFirst{fields[0].sliced(2), salt.decoded, fields[2].sliced(2).toInt()};
}

}  // namespace

ScramProof::ScramProof(Credentials who, QByteArray nonce)
    : who_(std::move(who)), nonce_(std::move(nonce)) {}

QByteArray ScramProof::NewNonce() {
  std::array<quint32, 6> random;
  QRandomGenerator::system()->fillRange(random.data(), random.size());
  return QByteArray(reinterpret_cast<const char*>(random.data()), sizeof(random)).toBase64();
}

QByteArray ScramProof::FirstMessage() const {
  QByteArray name = Prepared(who_.user).toUtf8();
  name.replace('=', "=3D").replace(',', "=2C");
  return "n=" + name + ",r=" + nonce_;
}

std::optional<SaslResponse> ScramProof::Initial() {
  return SaslResponse{kBindingHeader + FirstMessage()};
}

// "e=..." (RFC 5802 section 7) stands where the server would go on. It says in its protocol, too,
// that it refuses, once it has an answer.
bool ScramProof::TakesError(const QByteArray& challenge) {
  const QByteArray field = challenge.split(',').first();
  if (!field.startsWith("e=")) return false;
  serverError_ = field.sliced(2);
  return true;
}

std::optional<SaslResponse> ScramProof::Answer(const QByteArray& challenge) {
  if ((step_ == Step::AwaitsSalt || step_ == Step::AwaitsSignature) && TakesError(challenge)) {
    step_ = Step::Over;
    return SaslResponse{};
  }
  switch (std::exchange(step_, Step::Over)) {
    case Step::AwaitsSalt:
      return Prove(challenge);
    case Step::AwaitsSignature:
      return Verify(challenge);
    default:
      return std::nullopt;
  }
}

// RFC 5802 section 3.
std::optional<SaslResponse> ScramProof::Prove(const QByteArray& serverFirst) {
  const std::optional<ServerFirst> server = Read(serverFirst);
  if (!server || server->iterations < kLeastIterations || server->iterations > kMostIterations ||
      server->nonce == nonce_ || !server->nonce.startsWith(nonce_)) {
    return std::nullopt;
  }
  const QByteArray salted = QPasswordDigestor::deriveKeyPbkdf2(
      kHash, Prepared(who_.password).toUtf8(), server->salt, server->iterations, kKeyBytes);
  const QByteArray withoutProof = "c=" + kBindingHeader.toBase64() + ",r=" + server->nonce;
  const QByteArray signedText = FirstMessage() + ',' + serverFirst + ',' + withoutProof;
  QByteArray proof = Code(salted, "Client Key");
  const QByteArray signature = Code(QCryptographicHash::hash(proof, kHash), signedText);
  for (qsizetype at = 0; at < proof.size(); ++at) {
    proof[at] = static_cast<char>(proof[at] ^ signature[at]);
  }
  serverSignature_ = Code(Code(salted, "Server Key"), signedText);
  step_ = Step::AwaitsSignature;
  const QByteArray written = proof.toBase64();
  return SaslResponse{withoutProof + ",p=" + written, written};
}

std::optional<SaslResponse> ScramProof::Verify(const QByteArray& serverFinal) {
  if (serverFinal.split(',').first() != "v=" + serverSignature_.toBase64()) return std::nullopt;
  step_ = Step::Verified;
  return SaslResponse{};
}

}  // namespace vorn
