#pragma once

#include <QByteArray>
#include <QString>
#include <deque>
#include <functional>
#include <map>
#include <vector>

#include "transfer/mail_session.h"
#include "transfer/pop3_mailbox.h"
#include "transfer/pop3_reply_reader.h"
#include "transfer/pop_events.h"
#include "transfer/redaction.h"
#include "transfer/sasl.h"

namespace vorn {

/// Whom a receive session logs in as, and how.
struct Pop3Login {
  QString server;
  QString user;
  QString password;
  bool apop = false;
  Security security = Security::None;
  bool loginOnly = false;  ///< end after the login, to try it or for "POP before SMTP"
};

/// One POP3 conversation (RFC 1939, CAPA and PIPELINING of RFC 2449, STLS of RFC 2595, AUTH of RFC
/// 5034). A message is marked for deletion only after a successful `PopEvents::MakeDurable`.
class Pop3Session : public MailSession {
 public:
  /// `startTls` begins the handshake on the connection; `TlsEstablished` is called when it is done.
  Pop3Session(Pop3Login login, PopEvents& events, std::function<void(QByteArray)> send,
              std::function<void()> startTls = {});

  void Receive(QByteArrayView bytes) override;
  bool Work() override;
  void TlsEstablished() override;
  void ConnectionLost() override;
  bool Finished() const override { return stage_ == Stage::Finished; }
  void Abandon() override { Finish(); }
  qsizetype Replies() const override { return replies_; }
  int Deleted() const override { return deleted_; }

 private:
  enum class Stage {
    Greeting,
    Capabilities,
    Handshake,
    User,
    Password,
    Listing,
    Transfer,
    Deletion,
    Quit,
    Finished
  };
  enum class Command { Capa, Stls, Auth, User, Pass, Apop, List, Uidl, Top, Retr, Dele, Quit };

  // A message whose size was about the announced one, before any was exact.
  struct NearMessage {
    size_t message;
    QString id;
    bool isStopped = false;  // by a rule
  };
  struct Pending {
    Command command;
    size_t message = 0;
  };

  void Send(const QByteArray& line, Pending pending);
  bool ReadReply();
  void BeginBody(const Pending& pending);
  void TakeReply(const Pending& pending, bool ok, const QByteArray& line);
  void TakeBody(const Pending& pending, QByteArray body);
  void GreetedAndAsked(const QByteArray& capabilities);
  void StartTls(bool ok, const QByteArray& line);
  void ChooseLogin(const QByteArray& capabilities);
  void Login();
  void BeginAuth();
  void GoOnWithAuth(const QByteArray& line);
  void LoginRefused(const QByteArray& line);
  void LoggedIn();
  QString MessageId(const QByteArray& uidl) const;
  void ListingDone();
  bool TellListing();
  bool IsMultiLine(Command command) const;
  bool WindowHasRoom() const;
  void ConsiderNext();
  void Fetch(size_t message);
  void FetchUntested(size_t message);
  bool IsWanted(size_t message, const QByteArray& header);
  bool IsStopped(const QByteArray& header, bool isTornOff, bool& deleteOnServer);
  void AskForHeader(size_t message);
  void EndStop(size_t message, const QByteArray& header);
  void KeepNear();
  bool IsRepeated(size_t message, const QByteArray& data);
  void MessageDone(size_t message, const QByteArray& data);
  void FinishTransfer();
  void SendDeletions();
  void ReportProgress(qint64 inFlight);
  void Fail(PopError code, const QString& text);
  void Finish() { stage_ = Stage::Finished; }

  Pop3Login login_;
  Redaction redaction_;
  PopEvents& events_;
  std::function<void(QByteArray)> send_;
  std::function<void()> startTls_;
  bool encrypted_ = false;
  Pop3ReplyReader reader_;
  Stage stage_ = Stage::Greeting;
  std::deque<Pending> pending_;
  bool inBody_ = false;
  SaslExchange auth_;
  bool offersUser_ = true;
  bool pipelining_ = false;
  bool offersUidl_ = false;
  bool wantsHeaders_ = false;
  bool lacksTop_ = false;  // rules are tested on whole messages
  bool toldOfTop_ = false;
  bool hasTop_ = false;          // it was answered once
  bool asksForHeaders_ = false;  // it was asked for in this session
  std::vector<bool> untested_;   // by message: rules are still to be tested on its header
  bool hasExactSizes_ = false;   // of a message so far
  std::vector<NearMessage> near_;
  std::map<size_t, QByteArray> doubtful_;  // by message: what was answered first
  std::map<size_t, QByteArray> stops_;     // by message: the header for which a rule deletes it
  qsizetype replies_ = 0;                  // whole replies so far
  qsizetype received_ = 0;                 // bytes before the login is over
  bool loggedIn_ = false;
  bool stopped_ = false;  // nothing more is fetched after a message could not be stored
  QByteArray timestamp_;  // of the greeting, for APOP
  QByteArray list_;
  QByteArray uidl_;
  bool hasUidl_ = false;

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
