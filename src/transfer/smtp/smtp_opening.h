#pragma once

#include <QByteArray>
#include <functional>
#include <optional>

#include "objects/endpoint.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/protocol/redaction.h"
#include "transfer/protocol/sasl.h"
#include "transfer/protocol/tls_step.h"
#include "transfer/smtp/smtp_extensions.h"

namespace vorn {

/// The beginning of an SMTP session (RFC 5321 section 3.1): what the server can (EHLO), encryption
/// (STARTTLS, RFC 3207), and the login (AUTH, RFC 4954).
class SmtpOpening {
 public:
  enum class State { Asking, Handshake, Over };

  /// What ends the session before its message.
  struct Failure {
    PopFailure told;
    bool inOrder;  ///< the server, which keeps to the protocol, is told as well (QUIT)
  };

  /// Logs in where `authenticate`. `server` and `redaction` outlive it.
  SmtpOpening(const Endpoint& server, bool authenticate, Redaction& redaction,
              std::function<void(QByteArray)> send)
      : server_(server),
        authenticate_(authenticate),
        redaction_(redaction),
        send_(std::move(send)),
        tls_(server.security, TlsStep::Direction::Sending) {}

  State GetState() const { return state_; }
  const SmtpExtensions& Extensions() const { return extensions_; }

  /// Takes the next reply, first the greeting; `hasMore` when bytes came behind it.
  [[nodiscard]] std::optional<Failure> TakeReply(int code, const QByteArray& reply, bool hasMore);
  /// The encryption stands: the server is asked anew.
  void GoOnEncrypted();

 private:
  enum class Step { Greeting, Ehlo, Helo, StartTls, Auth };

  void Send(Step step, const QByteArray& line);
  Failure Refused(const QString& sentence, const QByteArray& reply) const;
  std::optional<Failure> TakeTlsAnswer(bool ok, const QByteArray& reply, bool hasMore);
  std::optional<Failure> Greeted();
  std::optional<Failure> BeginAuth();
  std::optional<Failure> TakeAuthReply(int code, const QByteArray& reply);

  const Endpoint& server_;
  bool authenticate_;
  Redaction& redaction_;
  std::function<void(QByteArray)> send_;
  State state_ = State::Asking;
  Step step_ = Step::Greeting;
  SmtpExtensions extensions_;
  TlsStep tls_;
  SaslExchange auth_;
};

}  // namespace vorn
