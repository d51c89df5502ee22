#include "transfer/smtp/smtp_session.h"

#include <utility>

#include "storage/ui.h"
#include "transfer/protocol/wire_message.h"

namespace vorn {
namespace {

constexpr int kClosing = 421;
constexpr int kMoreWanted = 530;  // a login (RFC 4954 section 6), or STARTTLS (RFC 3207 section 4)

QString NotUnderstood() {
  return Ui::tr("サーバーの応答を理解できません。サーバー名とポート番号を確認してください。");
}

}  // namespace

SmtpSession::SmtpSession(SmtpJob job, PopEvents& events, std::function<void(QByteArray)> send,
                         std::function<void()> startTls)
    : job_(std::move(job)),
      redaction_(job_.server.who),
      events_(events),
      send_(std::move(send)),
      startTls_(std::move(startTls)),
      opening_(job_.server, job_.authenticate, redaction_, send_) {}

void SmtpSession::Fail(PopError code, const QString& text) {
  // Whatever cannot be understood after the end of the message may have been a yes.
  EndHandover(AwaitsDecision() ? HandoverOutcome::Unknown : HandoverOutcome::Refused);
  events_.Error(code, text);
  stage_ = Stage::Finished;
}

// Without its end mark no server takes a message.
void SmtpSession::Abandon() {
  if (Finished()) return;
  EndHandover(AwaitsDecision() ? HandoverOutcome::Unknown : HandoverOutcome::Refused);
  stage_ = Stage::Finished;
}

void SmtpSession::EndHandover(HandoverOutcome outcome) {
  if (std::exchange(handingOver_, false))
    events_.Handover().HandoverEnded(outcome, redaction_.Words(reader_.Text()));
}

// Tells a refusal and says good-bye in order.
void SmtpSession::LeaveAfter(PopError code, const QString& sentence) {
  EndHandover(HandoverOutcome::Refused);
  events_.Error(code, redaction_.WithReply(sentence, reader_.Text()));
  Leave();
}

void SmtpSession::Leave() {
  stage_ = Stage::Quit;
  Send("QUIT");
}

void SmtpSession::Send(const QByteArray& line) {
  send_(line + "\r\n");
}

void SmtpSession::Receive(QByteArrayView bytes) {
  reader_.Feed(bytes);
  if (stage_ < Stage::Envelope) received_ += bytes.size();
  if (received_ > SmtpReplyReader::kMaxReply) return Fail(PopError::Protocol, NotUnderstood());
  while (!Finished() && ReadReply()) {
  }
}

bool SmtpSession::ReadReply() {
  switch (reader_.Next()) {
    case SmtpReplyReader::Event::NeedMore:
      return false;
    case SmtpReplyReader::Event::TooLong:
      Fail(PopError::Protocol, NotUnderstood());
      return false;
    case SmtpReplyReader::Event::Strange:
      Fail(PopError::Protocol, redaction_.WithReply(NotUnderstood(), reader_.Text()));
      return false;
    case SmtpReplyReader::Event::Reply:
      break;
  }
  TakeReply(reader_.Code());
  reader_.Clear();
  return true;
}

void SmtpSession::TakeReply(int code) {
  switch (stage_) {
    case Stage::Opening:
      TakeOpeningReply(code);
      return;
    case Stage::Envelope:
      TakeEnvelopeReply(code);
      return;
    case Stage::Data:
      TakeDataReply(code);
      return;
    case Stage::Body:
      TakeDecision(code);
      return;
    case Stage::Quit:
      // Answers to commands sent ahead of a refusal may come first.
      if (envelope_.AwaitsReply()) {
        envelope_.TakeReply();
      } else {
        stage_ = Stage::Finished;
      }
      return;
    default:
      Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。"));
  }
}

void SmtpSession::TakeOpeningReply(int code) {
  const auto failure = opening_.TakeReply(code, reader_.Text(), reader_.HasUnread());
  if (failure && failure->inOrder) {
    events_.Error(failure->told.code, failure->told.text);
    Leave();
  } else if (failure) {
    Fail(failure->told.code, failure->told.text);
  } else if (opening_.GetState() == SmtpOpening::State::Handshake) {
    stage_ = Stage::Handshake;
    startTls_();
  } else if (opening_.GetState() == SmtpOpening::State::Over) {
    BeginEnvelope();
  }
}

void SmtpSession::TlsEstablished() {
  if (stage_ != Stage::Handshake) return;
  stage_ = Stage::Opening;
  opening_.GoOnEncrypted();
}

void SmtpSession::BeginEnvelope() {
  if (job_.loginOnly) return Leave();
  body_.Take(WireMessage(job_.source));
  const auto refusal =
      envelope_.Plan(job_.from, job_.recipients, body_.Wire(), opening_.Extensions());
  if (refusal) return Fail(PopError::Refused, *refusal);
  stage_ = Stage::Envelope;
  send_(envelope_.NextCommands());
}

void SmtpSession::TakeEnvelopeReply(int code) {
  const QString address = envelope_.TakeReply();
  if (code == kClosing) {
    return LeaveAfter(PopError::Refused, Ui::tr("メッセージの送信を断られました。"));
  }
  if (code == kMoreWanted) {
    return LeaveAfter(PopError::Login,
                      Ui::tr("サーバーがログインか暗号化を求めています。アカウントの送信の設定を"
                             "確認してください。"));
  }
  if (code / 100 != 2 && envelope_.WasSender()) {
    return LeaveAfter(PopError::Refused,
                      Ui::tr("差出人のアドレス「%1」をサーバーに断られました。").arg(address));
  }
  if (code / 100 != 2) {
    events_.Handover().RecipientRefused(address, redaction_.Words(reader_.Text()));
    refusals_.append(redaction_.WithReply(address, reader_.Text()));
  }
  if (envelope_.AwaitsReply()) return;
  if (envelope_.HasCommands()) return send_(envelope_.NextCommands());
  EnvelopeDone();
}

void SmtpSession::EnvelopeDone() {
  if (!refusals_.isEmpty()) {
    events_.Error(PopError::Refused,
                  Ui::tr("宛先をサーバーに断られました。アドレスを確認してください。") +
                      refusals_.join(Ui::tr("、")));
    Leave();
    return;
  }
  if (reader_.HasUnread()) {  // what no command asked for would be taken for a later answer
    Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。"));
    return;
  }
  if (!events_.Handover().BeginHandover()) {
    Leave();
    return;
  }
  handingOver_ = true;
  stage_ = Stage::Data;
  Send("DATA");
}

void SmtpSession::TakeDataReply(int code) {
  if (code != 354) {
    LeaveAfter(PopError::Refused, Ui::tr("メッセージの送信を断られました。"));
  } else if (reader_.HasUnread()) {  // no answer to a message that has not been sent
    Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。"));
  } else {
    stage_ = Stage::Body;
    body_.Begin();
    Drained();
  }
}

// The answer to the end mark. One that comes before it ends the connection: what would follow were
// taken for text of the message.
void SmtpSession::TakeDecision(int code) {
  const int kind = code / 100;
  if (!AwaitsDecision()) {
    Fail(PopError::Refused,
         redaction_.WithReply(Ui::tr("メッセージの送信を断られました。"), reader_.Text()));
  } else if (kind == 2) {
    handingOver_ = false;
    events_.Handover().MessageSent(job_.source);
    Leave();
  } else if (kind == 4 || kind == 5) {
    LeaveAfter(PopError::Refused, Ui::tr("メッセージの送信を断られました。"));
  } else {
    Fail(PopError::Protocol,
         redaction_.WithReply(Ui::tr("サーバーの応答を理解できません。"), reader_.Text()));
  }
}

void SmtpSession::Drained() {
  if (stage_ != Stage::Body || !body_.IsUnderWay()) return;
  events_.Progress(body_.Size(), body_.Sent(), {});
  send_(body_.NextSlice());
  if (body_.IsGone()) events_.Progress(body_.Size(), body_.Sent(), {});
}

void SmtpSession::ConnectionLost() {
  if (Finished()) return;
  if (stage_ == Stage::Quit) {
    stage_ = Stage::Finished;
    return;
  }
  Fail(PopError::ConnectionLost,
       AwaitsDecision()
           ? Ui::tr("送信の確認を受け取る前に接続が切れました。届いている可能性もあります。")
           : Ui::tr("サーバーが接続を切りました。メッセージは送信待ちのまま残ります。"));
}

}  // namespace vorn
