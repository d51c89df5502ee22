#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "objects/endpoint.h"
#include "transfer/pop3/pop3_pipeline.h"
#include "transfer/protocol/mail_session.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/protocol/redaction.h"
#include "transfer/protocol/sasl.h"
#include "transfer/protocol/tls_step.h"

namespace vorn {

/// Whom a receive session logs in as, and how.
struct Pop3Login {
  Endpoint server;
  bool apop = false;
  bool loginOnly = false;  ///< end after the login, to try it or for "POP before SMTP"
};

/// The beginning of a POP3 session (RFC 1939 section 4): what the server can (CAPA, RFC 2449),
/// encryption (STLS, RFC 2595), and the login by USER, APOP or AUTH (RFC 5034).
class Pop3Authorization {
 public:
  enum class State { Asking, Handshake, LoggedIn };

  Pop3Authorization(const Pop3Login& login, Redaction& redaction, Pop3Pipeline& pipeline)
      : login_(login),
        redaction_(redaction),
        pipeline_(pipeline),
        tls_(login.server.security, TlsStep::Direction::Receiving) {}

  State GetState() const { return state_; }
  /// Whether the server said that it has UIDL, or that it lacks TOP.
  bool OffersUidl() const { return offersUidl_; }
  bool LacksTop() const { return lacksTop_; }

  /// Begins after the server's greeting.
  void Begin(const QByteArray& greeting);
  /// Takes what the server can; nothing when it does not tell. Goes on with encryption or the
  /// login.
  [[nodiscard]] std::optional<PopFailure> TakeCapabilities(const QByteArray& capabilities);
  /// The encryption stands: everything is asked anew.
  void GoOnEncrypted();
  /// Takes a server's challenge.
  [[nodiscard]] std::optional<PopFailure> TakeChallenge(const QByteArray& line);
  /// Takes the reply to a command of this state; `hasMore` when bytes came behind it.
  [[nodiscard]] std::optional<PopFailure> TakeReply(Pop3Command command, bool ok,
                                                    const QByteArray& line, bool hasMore);

 private:
  std::optional<PopFailure> BeginTls(bool ok, const QByteArray& line, bool hasMore);
  void ChooseLogin(const QByteArray& capabilities);
  std::optional<PopFailure> StartLogin();
  std::optional<PopFailure> LogInByApop();
  std::optional<PopFailure> TryAnotherWay(const QByteArray& line);

  const Pop3Login& login_;
  Redaction& redaction_;
  Pop3Pipeline& pipeline_;
  State state_ = State::Asking;
  QByteArray timestamp_;  // of the greeting, for APOP
  TlsStep tls_;
  bool canSayUser_ = true;  // the server takes USER, and it fits
  // Not where anybody on the way may have had a mechanism refused that hides it.
  bool maySayPassword_ = true;
  bool offersUidl_ = false;
  bool lacksTop_ = false;
  SaslExchange auth_;
};

}  // namespace vorn
