#pragma once

#include <QByteArray>
#include <QString>
#include <deque>
#include <functional>
#include <vector>

#include "transfer/pop3_mailbox.h"
#include "transfer/pop3_reply_reader.h"
#include "transfer/pop_events.h"

namespace vorn {

/// Whom a receive session logs in as, and how.
struct Pop3Login {
  QString server;
  QString user;
  QString password;
  bool apop = false;
};

/// One POP3 conversation (RFC 1939, CAPA and PIPELINING of RFC 2449) without a socket: it is fed
/// what the server sends and gives out what to send, so that any conversation can be played to it.
///
/// It ends in exactly one way: `Finished()` becomes true, after every failure was told through
/// `PopEvents::Error`. A message is marked for deletion only after a successful
/// `PopEvents::MakeDurable`.
class Pop3Session {
 public:
  Pop3Session(Pop3Login login, PopEvents& events, std::function<void(QByteArray)> send);

  /// Takes bytes from the server and goes on as far as they allow.
  void Receive(QByteArrayView bytes);
  /// Goes on with work that needs no bytes from the server, for a short while.
  /// Returns whether more of it is left.
  bool Work();
  /// The server closed the connection, or it broke.
  void ConnectionLost();

  bool Finished() const { return stage_ == Stage::Finished; }
  /// Messages that the server has deleted: confirmed, and the session ended properly.
  int Deleted() const { return deleted_; }

 private:
  enum class Stage {
    Greeting,
    Capabilities,
    User,
    Password,
    Listing,
    Transfer,
    Deletion,
    Quit,
    Finished
  };
  enum class Command { Capa, User, Pass, Apop, List, Uidl, Top, Retr, Dele, Quit };

  struct Pending {
    Command command;
    size_t message = 0;
  };

  void Send(const QByteArray& line, Pending pending);
  bool ReadGreeting();
  bool ReadReply();
  void TakeReply(const Pending& pending, bool ok, const QByteArray& line);
  void TakeBody(const Pending& pending, QByteArray body);
  void Login();
  void LoggedIn();
  void ListingDone();
  bool IsMultiLine(Command command) const;
  bool WindowHasRoom() const;
  void ConsiderNext();
  void Fetch(size_t message);
  void MessageDone(size_t message, const QByteArray& data);
  void FinishTransfer();
  void SendDeletions();
  void ReportProgress(qint64 inFlight);
  void Fail(PopError code, const QString& text);
  void Finish() { stage_ = Stage::Finished; }

  Pop3Login login_;
  PopEvents& events_;
  std::function<void(QByteArray)> send_;
  Pop3ReplyReader reader_;
  Stage stage_ = Stage::Greeting;
  std::deque<Pending> pending_;
  bool inBody_ = false;
  bool pipelining_ = false;
  bool wantsHeaders_ = false;
  bool stopped_ = false;  // nothing more is fetched after a message could not be stored
  QByteArray timestamp_;  // of the greeting, for APOP
  QByteArray list_;
  QByteArray uidl_;

  std::vector<Pop3Message> messages_;
  size_t next_ = 0;
  std::deque<size_t> doomed_;  // to be deleted on the server, once the store is durable
  qint64 bytesAsked_ = 0;      // of messages under way
  qint64 bytesTotal_ = 0;
  qint64 bytesDone_ = 0;
  qint64 lastProgress_ = -1;
  int marked_ = 0;
  int deleted_ = 0;
};

}  // namespace vorn
