#pragma once

#include <QByteArrayView>

#include "objects/security.h"

namespace vorn {

/// One conversation with a mail server, without a socket: it is fed what the server sends and gives
/// out what to send, so that any conversation can be played to it. It ends when `Finished()`
/// becomes true, after every failure was told through `PopEvents::Error`, or by `Abandon`.
class MailSession {
 public:
  virtual ~MailSession() = default;

  /// Takes bytes from the server and goes on as far as they allow.
  virtual void Receive(QByteArrayView bytes) = 0;
  /// Goes on with work that needs no bytes from the server, for a short while.
  /// Returns whether more of it is left.
  virtual bool Work() { return false; }
  /// Everything given out has left: more may be given. For what is too large to give at once.
  virtual void Drained() {}
  /// Whether the server has a whole message and is making up its mind, which may take minutes.
  virtual bool AwaitsDecision() const { return false; }
  /// The encryption that the session asked for stands; the conversation goes on in it.
  virtual void TlsEstablished() = 0;
  /// The server closed the connection, or it broke.
  virtual void ConnectionLost() = 0;
  virtual bool Finished() const = 0;
  /// Ends the conversation from outside (cancelled, timed out): tells what has become of a message
  /// that was being handed over. Whoever drops a session calls it first; after the end it does
  /// nothing.
  virtual void Abandon() = 0;
  /// Whole replies taken so far. A server that takes its time for each is alive, one that never
  /// comes to the end of one is not.
  virtual qsizetype Replies() const = 0;
  /// Messages that the server has deleted: confirmed, and the session ended properly.
  virtual int Deleted() const { return 0; }
};

}  // namespace vorn
