#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

namespace vorn {

/// How the handing over of a message ended when the server did not accept it.
enum class HandoverOutcome {
  Refused,  ///< the message has certainly not been accepted
  Unknown,  ///< its end was given to the connection and no clear answer came
};

/// Why a message that a rule stopped is not deleted on the server after all.
enum class StopDoubt {
  OtherHeader,  ///< a second answer had another header
  OtherSize,    ///< the server's sizes are exact, and the answer had another one
};

/// A message of a mailbox.
struct ListedMessage {
  QString id;
  qint64 size = 0;  ///< bytes, as the server tells
};

/// What becomes of a message on the server.
enum class ServerCopy { Stays, Deleted };
constexpr ServerCopy DeletedIf(bool isWanted) {
  return isWanted ? ServerCopy::Deleted : ServerCopy::Stays;
}

/// What a session that receives asks and tells of the messages in a mailbox. Who says nothing
/// stores nothing, and nothing is deleted.
class RetrievalEvents {
 public:
  virtual ~RetrievalEvents() = default;

  /// A message has been downloaded to its end; `isTornOff` when it is not the one that the server
  /// announced by its size (`SizeFit`), or has a hole. Nothing when
  /// it could not be stored; the session then fetches nothing more.
  virtual std::optional<ServerCopy> MessageArrived(const QString& /*messageId*/,
                                                   const QByteArray& /*data*/, bool /*isTornOff*/) {
    return {};
  }
  /// The messages that the mailbox has and the server gives an identifier of its own, all of which
  /// begin with `scope`; nothing when it gives none. After false, which comes with an error told,
  /// the session ends.
  virtual bool MailboxListed(const QString& /*scope*/,
                             const std::optional<QList<ListedMessage>>& /*messages*/) {
    return true;
  }
  /// Asked before a message is downloaded. Nothing when it is to be; one that is stored already is
  /// not downloaded again.
  virtual std::optional<ServerCopy> AlreadyStored(const QString& /*messageId*/) { return {}; }
  /// Whether the header of a message that does not exist by its identifier may show that it does.
  virtual bool WantsHeader(const QString& /*messageId*/) { return false; }
  /// The same with that header. Nothing when it does not show it; the message is then downloaded.
  virtual std::optional<ServerCopy> StoredByHeader(const QString& /*messageId*/,
                                                   const QByteArray& /*header*/) {
    return {};
  }
  /// A message that is torn off, and stored already, stays on the server.
  virtual void TornOffAgain() {}
  /// Asked with a message's header before it is downloaded, when `WantsHeaders` says so. One that
  /// is downloaded already and torn off may be another's: it is stopped and stays on the server.
  /// Nothing when no rule stops it.
  virtual std::optional<ServerCopy> ReceiveStopTest(const QByteArray& /*header*/,
                                                    bool /*isTornOff*/) {
    return {};
  }
  /// Whether an earlier session got an answer for it that did not fit its size.
  virtual bool HasDoubt(const QString& /*messageId*/) { return false; }
  /// That a message which was handed over as fitting does not, and stays on the server.
  virtual void TakeBack(const QString& /*messageId*/) { TornOffAgain(); }
  /// That the answer by which a rule stopped it did not fit: the next one has to.
  virtual void Doubted(const QString& /*messageId*/) {}
  /// That what a rule was about to delete stays on the server.
  virtual void StopTakenBack(StopDoubt /*why*/) {}

  /// Whether any receive-stop rule could match, which costs a question to the server per message.
  virtual bool WantsHeaders() { return false; }
  /// Makes all messages handed over so far durable. Asked before the server is told that the
  /// session is over, since that is when it deletes. After false nothing is deleted.
  [[nodiscard]] virtual bool MakeDurable() { return false; }
};

/// What a session that sends asks and tells of its message. Who says nothing sends nothing.
class HandoverEvents {
 public:
  virtual ~HandoverEvents() = default;

  /// Every recipient was accepted and the message itself would be sent next. Asked once, right
  /// before the DATA command. After false the session takes its leave and tells no error: whoever
  /// answers has told why.
  [[nodiscard]] virtual bool BeginHandover() { return false; }
  /// The message being sent has been accepted by the server (a 2yz reply to its end mark).
  virtual void MessageSent(const QByteArray& /*data*/) {}
  /// Told exactly once after a `BeginHandover` that returned true, unless `MessageSent` is, however
  /// the session ends; only deleting the `Pop` in the middle tells nothing. `reply` is what the
  /// server said, empty when it said nothing.
  virtual void HandoverEnded(HandoverOutcome /*outcome*/, const QString& /*reply*/) {}
  /// The server declined one recipient, for the reason in `reply`. An `Error` that names all of
  /// them follows.
  virtual void RecipientRefused(const QString& /*address*/, const QString& /*reply*/) {}
};

/// What `PopEvents::Error` tells of.
enum class PopError {
  Connect = 1,
  TimeOut,
  ConnectionLost,
  Login,
  Protocol,
  Refused,  ///< the server declined one command
  Store,
  Cancelled,  ///< by the user
  Tls,        ///< no encryption, or none that can be trusted
};

/// Why a session ends, as `PopEvents::Error` is told it.
struct PopFailure {
  PopError code;
  QString text;
};

/// How far a session is with the messages of a mailbox.
struct FetchedMessages {
  int undecided = 0;  ///< may be known, or stopped by a rule
  int wanted = 0;     ///< are fetched, as far as is decided by now
  int come = 0;       ///< of those
};

/// What the transfer control `Pop` asks and tells the program while a session runs. Always called
/// from the event loop of the user-interface thread, never from inside `Pop::Start`.
class PopEvents {
 public:
  virtual ~PopEvents() = default;

  virtual RetrievalEvents& Retrieval() = 0;
  virtual HandoverEvents& Handover() = 0;
  /// A failure, as a sentence for the user.
  virtual void Error(PopError code, const QString& text) = 0;
  virtual void SessionStarted() {}
  virtual void SessionEnded() {}
  /// `done` of `total` bytes; `total` may be 0. A session that sends fetches nothing.
  virtual void Progress(qint64 /*total*/, qint64 /*done*/, const FetchedMessages& /*fetched*/) {}
  virtual void Log(const QString& /*text*/) {}
};

}  // namespace vorn
