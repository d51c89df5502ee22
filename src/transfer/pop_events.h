#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// What the transfer control `Pop` asks and tells the program while a session runs. Always called
/// from the event loop of the user-interface thread, never from inside `Pop::Start`.
class PopEvents {
 public:
  virtual ~PopEvents() = default;

  /// A message has been downloaded completely. `deleteOnServer` starts false. Returns whether it
  /// was stored; after false the session fetches nothing more.
  virtual bool MessageArrived(const QString& messageId, const QByteArray& data,
                              bool& deleteOnServer) = 0;
  /// The message being sent has been accepted by the server.
  virtual void MessageSent(const QByteArray& data) = 0;
  /// Asked before a message is downloaded. One that exists is not downloaded again.
  virtual void AlreadyStored(const QString& messageId, bool& exists, bool& deleteOnServer) = 0;
  /// A failure, as a sentence for the user.
  virtual void Error(int code, const QString& text) = 0;
  /// Asked with a message's header before it is downloaded, when `WantsHeaders` says so.
  virtual void ReceiveStopTest(const QByteArray& header, bool& stop, bool& deleteOnServer) = 0;
  virtual void SessionStarted() = 0;
  virtual void SessionEnded() = 0;
  /// `done` of `total` bytes; `total` may be 0.
  virtual void Progress(int code, qint64 total, qint64 done) = 0;
  virtual void Log(int code, const QString& text) = 0;

  /// Whether any receive-stop rule could match, which costs a question to the server per message.
  virtual bool WantsHeaders() = 0;
  /// Makes all messages handed over so far durable. Asked before the server is told that the
  /// session is over, since that is when it deletes. After false nothing is deleted.
  virtual bool MakeDurable() = 0;
};

/// Codes of `PopEvents::Error`.
enum class PopError {
  Connect = 1,
  TimeOut,
  ConnectionLost,
  Login,
  Protocol,
  Refused,  ///< the server declined one command
  Store,
  Cancelled,
  Tls,  ///< no encryption, or none that can be trusted
};

}  // namespace vorn
