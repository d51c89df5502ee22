#pragma once

#include <QByteArray>

#include "objects/endpoint.h"
#include "transfer/protocol/sasl_proof.h"

namespace vorn {

/// SCRAM-SHA-256 (RFC 5802, RFC 7677) without channel binding. The password does not leave the
/// program, and a server that does not know it is not believed.
class ScramProof : public SaslProof {
 public:
  explicit ScramProof(const Credentials& who) : ScramProof(who, NewNonce()) {}
  /// With the client's nonce: printable characters without a comma.
  ScramProof(Credentials who, QByteArray nonce);

  std::optional<SaslResponse> Initial() override;
  std::optional<SaslResponse> Answer(const QByteArray& challenge) override;
  QByteArray ServerError() const override { return serverError_; }
  bool TrustsServer() const override { return step_ == Step::Verified; }

 private:
  enum class Step { AwaitsSalt, AwaitsSignature, Verified, Over };

  static QByteArray NewNonce();
  QByteArray FirstMessage() const;
  bool TakesError(const QByteArray& challenge);
  std::optional<SaslResponse> Prove(const QByteArray& serverFirst);
  std::optional<SaslResponse> Verify(const QByteArray& serverFinal);

  Credentials who_;
  QByteArray nonce_;
  Step step_ = Step::AwaitsSalt;
  QByteArray serverError_;
  QByteArray serverSignature_;  // that only a server which knows the password can give
};

}  // namespace vorn
