#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <optional>

#include "transfer/pop3/pop3_authorization.h"
#include "transfer/pop3/pop3_pipeline.h"
#include "transfer/pop3/pop3_reply_reader.h"
#include "transfer/pop3/pop3_retrieval.h"
#include "transfer/protocol/mail_session.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/protocol/redaction.h"

namespace vorn {

/// One POP3 conversation (RFC 1939, CAPA and PIPELINING of RFC 2449, STLS of RFC 2595, AUTH of RFC
/// 5034). A message is marked for deletion only after a successful `RetrievalEvents::MakeDurable`.
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
    Authorization,
    Handshake,
    Listing,
    Transfer,
    Deletion,
    Quit,
    Finished
  };

  bool ReadReply();
  bool ReadBody();
  bool ReadLine();
  void TakeGreeting(bool ok, const QByteArray& line);
  void BeginBody(const Pop3Pending& pending);
  void TakeReply(const Pop3Pending& pending, bool ok, const QByteArray& line);
  void TakeBody(const Pop3Pending& pending, QByteArray body);
  void GoOn(const std::optional<PopFailure>& failure);
  void BeginListing();
  void ListingDone(const std::optional<QByteArray>& uidl);
  void SendDeletions();
  void Leave();
  void TellRefusal(const QString& sentence, const QByteArray& line);
  void FailStrangely(const QByteArray& line = {});
  void Fail(PopError code, const QString& text);
  void Finish() { stage_ = Stage::Finished; }

  Pop3Login login_;
  Redaction redaction_;
  PopEvents& events_;
  std::function<void()> startTls_;
  Pop3ReplyReader reader_;
  Pop3Pipeline pipeline_;
  Pop3Authorization authorization_;
  Pop3Retrieval retrieval_;
  Stage stage_ = Stage::Greeting;
  bool inBody_ = false;
  qsizetype replies_ = 0;   // whole replies so far
  qsizetype received_ = 0;  // bytes before the login is over
  QByteArray list_;
  int marked_ = 0;
  int deleted_ = 0;
};

}  // namespace vorn
