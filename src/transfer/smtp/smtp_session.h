#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>

#include "transfer/protocol/mail_session.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/protocol/redaction.h"
#include "transfer/smtp/outgoing_body.h"
#include "transfer/smtp/smtp_envelope.h"
#include "transfer/smtp/smtp_opening.h"
#include "transfer/smtp/smtp_reply_reader.h"

namespace vorn {

/// What a send session transmits, and as whom it logs in.
struct SmtpJob {
  Endpoint server;
  bool authenticate = false;
  QString from;
  QStringList recipients;
  QByteArray source;
  bool loginOnly = false;  ///< end after the login, to try it
};

/// One SMTP conversation (RFC 5321, with SIZE, PIPELINING and 8BITMIME) that hands over one message
/// to all its recipients or to none: a refused recipient ends it before the message is sent. Once
/// the handing over has begun its outcome is told, however the conversation ends.
class SmtpSession : public MailSession {
 public:
  SmtpSession(SmtpJob job, PopEvents& events, std::function<void(QByteArray)> send,
              std::function<void()> startTls = {});

  void Receive(QByteArrayView bytes) override;
  void Drained() override;
  bool AwaitsDecision() const override { return stage_ == Stage::Body && body_.IsGone(); }
  void TlsEstablished() override;
  void ConnectionLost() override;
  bool Finished() const override { return stage_ == Stage::Finished; }
  void Abandon() override;
  qsizetype Replies() const override { return reader_.Count(); }

 private:
  enum class Stage { Opening, Handshake, Envelope, Data, Body, Quit, Finished };

  bool ReadReply();
  void TakeReply(int code);
  void TakeOpeningReply(int code);
  void BeginEnvelope();
  void TakeEnvelopeReply(int code);
  void EnvelopeDone();
  void TakeDataReply(int code);
  void TakeDecision(int code);
  void EndHandover(HandoverOutcome outcome);
  void Send(const QByteArray& line);
  void LeaveAfter(PopError code, const QString& sentence);
  void Leave();
  void Fail(PopError code, const QString& text);

  SmtpJob job_;
  Redaction redaction_;
  PopEvents& events_;
  std::function<void(QByteArray)> send_;
  std::function<void()> startTls_;
  Stage stage_ = Stage::Opening;
  SmtpReplyReader reader_;
  qsizetype received_ = 0;  // bytes before the login is over
  SmtpOpening opening_;
  SmtpEnvelope envelope_;
  QStringList refusals_;  // "address: reply" of recipients
  OutgoingBody body_;
  bool handingOver_ = false;  // begun, and its outcome not told yet
};

}  // namespace vorn
