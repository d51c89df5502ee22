#pragma once

#include <QByteArray>
#include <optional>

#include "transfer/protocol/mail_session.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/protocol/redaction.h"

namespace vorn {

/// The encryption that a session asks for in the midst of its conversation (STARTTLS: RFC 2595 of
/// POP3, RFC 3207 of SMTP), before anything else. Once it cannot be had the session ends.
class TlsStep {
 public:
  enum class Direction { Receiving, Sending };

  TlsStep(Security security, Direction direction) : security_(security), direction_(direction) {}

  /// Whether it has still to be asked for.
  bool IsDue() const { return security_ == Security::StartTls && !isEstablished_; }
  /// Whether the connection is encrypted, in whichever way.
  bool IsEncrypted() const { return security_ == Security::Tls || isEstablished_; }
  void Establish() { isEstablished_ = true; }

  /// The failure that it is when the server does not offer it.
  PopFailure NotOffered() const;
  /// Takes the answer; nothing when the handshake is due. `hasMore` says that bytes came behind it.
  [[nodiscard]] static std::optional<PopFailure> TakeAnswer(bool ok, const QByteArray& reply,
                                                            bool hasMore,
                                                            const Redaction& redaction);

 private:
  Security security_;
  Direction direction_;
  bool isEstablished_ = false;
};

}  // namespace vorn
