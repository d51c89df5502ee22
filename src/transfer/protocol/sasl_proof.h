#pragma once

#include <QByteArray>
#include <optional>

namespace vorn {

/// What a client says in a login, before base64, and what of it proves the user: that is kept out
/// of all that is shown.
struct SaslResponse {
  QByteArray words;
  QByteArray secret = {};
};

/// One login by a mechanism (RFC 4422 section 3), from its first response to the server's last
/// word. It is made for one login and keeps what one step needs of those before.
class SaslProof {
 public:
  virtual ~SaslProof() = default;

  /// The response that waits for no challenge; nothing when the server speaks first.
  virtual std::optional<SaslResponse> Initial() { return std::nullopt; }
  /// The response to a challenge; nothing to one that has no place in this login, which is then
  /// over.
  virtual std::optional<SaslResponse> Answer(const QByteArray& challenge) = 0;
  /// What the server said instead of going on, as the mechanism has it say that it refuses; empty
  /// where it did not.
  virtual QByteArray ServerError() const { return {}; }
  /// Whether a server that lets the user in now is believed: it has proved itself, if the mechanism
  /// has it do so.
  virtual bool TrustsServer() const { return true; }
};

}  // namespace vorn
