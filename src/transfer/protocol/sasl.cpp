#include "transfer/protocol/sasl.h"

#include <QMessageAuthenticationCode>
#include <algorithm>
#include <utility>

#include "storage/ui.h"
#include "transfer/protocol/scram_proof.h"

namespace vorn {
namespace {

// RFC 4616.
class PlainProof : public SaslProof {
 public:
  explicit PlainProof(const Credentials& who)
      : response_(
            {'\0' + who.user.toUtf8() + '\0' + who.password.toUtf8(), who.password.toUtf8()}) {}
  std::optional<SaslResponse> Initial() override { return response_; }
  // There are servers that ask again.
  std::optional<SaslResponse> Answer(const QByteArray&) override {
    if (std::exchange(hasAnswered_, true)) return std::nullopt;
    return response_;
  }

 private:
  SaslResponse response_;
  bool hasAnswered_ = false;
};

// The name, then the password, whatever the prompts say.
class LoginProof : public SaslProof {
 public:
  explicit LoginProof(const Credentials& who)
      : responses_({{who.user.toUtf8()}, {who.password.toUtf8(), who.password.toUtf8()}}) {}
  std::optional<SaslResponse> Answer(const QByteArray&) override {
    if (responses_.isEmpty()) return std::nullopt;
    return responses_.takeFirst();
  }

 private:
  QList<SaslResponse> responses_;
};

// RFC 2195.
class CramMd5Proof : public SaslProof {
 public:
  explicit CramMd5Proof(Credentials who) : who_(std::move(who)) {}
  std::optional<SaslResponse> Answer(const QByteArray& challenge) override {
    if (std::exchange(hasAnswered_, true)) return std::nullopt;
    const QByteArray proof =
        QMessageAuthenticationCode::hash(challenge, who_.password.toUtf8(), QCryptographicHash::Md5)
            .toHex();
    return SaslResponse{who_.user.toUtf8() + ' ' + proof, proof};
  }

 private:
  Credentials who_;
  bool hasAnswered_ = false;
};

// Also an empty one, of who has nothing else.
bool FitsPassword(const Credentials& who) {
  return !who.password.isEmpty() || !who.IsKnown();
}

template <class Proof>
std::unique_ptr<SaslProof> Begun(const Credentials& who) {
  return std::make_unique<Proof>(who);
}

// The one that is preferred first: what proves both sides, then the simplest.
constexpr SaslMechanism kMechanisms[] = {
    {.name = "SCRAM-SHA-256",
     .isPlainLogin = false,
     .hidesPassword = true,
     .needsStoredPassword = false,
     .isForSome = true,
     .fits = FitsPassword,
     .begin = Begun<ScramProof>},
    {.name = "PLAIN",
     .isPlainLogin = true,
     .hidesPassword = false,
     .needsStoredPassword = false,
     .isForSome = false,
     .fits = FitsPassword,
     .begin = Begun<PlainProof>},
    {.name = "LOGIN",
     .isPlainLogin = false,
     .hidesPassword = false,
     .needsStoredPassword = false,
     .isForSome = false,
     .fits = FitsPassword,
     .begin = Begun<LoginProof>},
    {.name = "CRAM-MD5",
     .isPlainLogin = false,
     .hidesPassword = true,
     .needsStoredPassword = true,
     .isForSome = false,
     .fits = FitsPassword,
     .begin = Begun<CramMd5Proof>},
};

}  // namespace

SaslExchange::SaslExchange(const QByteArrayList& offered, bool encrypted, Credentials who)
    : who_(std::move(who)), isEncrypted_(encrypted) {
  QList<const SaslMechanism*> hiding;
  for (const SaslMechanism& mechanism : kMechanisms) {
    if (!offered.contains(mechanism.name) || !mechanism.fits(who_)) continue;
    mechanisms_.append(&mechanism);
    if (mechanism.hidesPassword) hiding.append(&mechanism);
  }
  if (!encrypted && !hiding.isEmpty()) mechanisms_ = hiding;
}

bool SaslExchange::FitsPlainLogin(const Credentials& who) {
  return std::any_of(std::begin(kMechanisms), std::end(kMechanisms), [&](const auto& mechanism) {
    return mechanism.isPlainLogin && mechanism.fits(who);
  });
}

bool SaslExchange::TryNext(bool hiding) {
  if (!mechanisms_.isEmpty()) mechanisms_.removeFirst();
  if (hiding) mechanisms_.removeIf([](const auto* mechanism) { return !mechanism->hidesPassword; });
  hasProved_ = false;
  return !mechanisms_.isEmpty();
}

QByteArray SaslExchange::Begin(bool saysFirst, Redaction& redaction) {
  proof_ = Mechanism()->begin(who_);
  isCancelled_ = false;
  initial_ = proof_->Initial();
  const QByteArray command = QByteArray("AUTH ") + Mechanism()->name;
  if (!saysFirst || !initial_) return command;
  return command + ' ' + Say(*std::exchange(initial_, std::nullopt), redaction);
}

std::optional<QByteArray> SaslExchange::Answer(const QByteArray& challenge, Redaction& redaction) {
  if (proof_ == nullptr) return std::nullopt;
  const std::optional<SaslResponse> response =
      initial_ ? std::exchange(initial_, std::nullopt)
               : proof_->Answer(QByteArray::fromBase64(challenge));
  if (response) return Say(*response, redaction);
  // RFC 5034 section 4, RFC 4954 section 4.
  if (isEncrypted_ && !hasProved_ && !std::exchange(isCancelled_, true))
    return QByteArrayLiteral("*");
  return std::nullopt;
}

QByteArray SaslExchange::Say(const SaslResponse& response, Redaction& redaction) {
  if (!response.secret.isEmpty()) hasProved_ = true;
  redaction.Add(response.secret);
  return response.words.toBase64();
}

PopFailure SaslExchange::Broken(const QByteArray& reply, const Redaction& redaction) const {
  if (proof_ != nullptr && !proof_->ServerError().isEmpty()) return Refused(reply, redaction);
  return {PopError::Protocol,
          redaction.WithReply(Ui::tr("サーバーの応答がログインの手順に合わないため、ログインを中止"
                                     "しました。"),
                              reply)};
}

// What the mechanism itself has the server say tells more than that the login failed.
PopFailure SaslExchange::Refused(const QByteArray& reply, const Redaction& redaction) const {
  const QByteArray error = proof_ == nullptr ? QByteArray() : proof_->ServerError();
  return {
      PopError::Login,
      redaction.WithReply(Ui::tr("ログインできません。ユーザー名とパスワードを確認してください。"),
                          error.isEmpty() ? reply : error + ' ' + reply)};
}

}  // namespace vorn
