#include "transfer/smtp_session.h"

#include <algorithm>
#include <utility>

#include "mail/codec/address.h"
#include "mail/codec/envelope_address.h"
#include "mail/codec/mime_codec.h"
#include "storage/ui.h"
#include "transfer/server_words.h"
#include "transfer/wire_message.h"

namespace vorn {
namespace {

// One reply, and all of them until the login is over.
constexpr qsizetype kMaxReply = 64 * 1024;
constexpr qsizetype kSliceBytes = 256 * 1024;
constexpr qsizetype kEndMarkBytes = 5;
constexpr int kClosing = 421;

bool HasEightBit(const QByteArray& bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
}

// A receipt has no sender that a report on it could go to (RFC 8098 section 3).
bool IsReceipt(const QByteArray& source) {
  const QByteArrayView name = "Content-Type:";
  const MimeCodec::HeaderParameters type(
      MimeCodec::HeaderValue(MimeCodec::HeaderField(source, name), name.size()));
  return type.Main() == "multipart/report" &&
         type.Bytes("report-type").toLower() == "disposition-notification";
}

}  // namespace

SmtpSession::SmtpSession(SmtpJob job, PopEvents& events, std::function<void(QByteArray)> send,
                         std::function<void()> startTls)
    : job_(std::move(job)),
      redaction_(job_.user, job_.password),
      events_(events),
      send_(std::move(send)),
      startTls_(std::move(startTls)),
      encrypted_(job_.security == Security::Tls) {}

void SmtpSession::Fail(PopError code, const QString& text) {
  // Whatever cannot be understood after the end of the message may have been a yes.
  EndHandover(EndMarkGiven() ? HandoverOutcome::Unknown : HandoverOutcome::Refused);
  events_.Error(static_cast<int>(code), text);
  stage_ = Stage::Finished;
}

// Without its end mark no server takes a message.
void SmtpSession::Abandon() {
  if (Finished()) return;
  EndHandover(EndMarkGiven() ? HandoverOutcome::Unknown : HandoverOutcome::Refused);
  stage_ = Stage::Finished;
}

void SmtpSession::EndHandover(HandoverOutcome outcome) {
  if (std::exchange(handingOver_, false)) events_.HandoverEnded(outcome, redaction_.Words(reply_));
}

// Tells a refusal and says good-bye in order.
void SmtpSession::LeaveAfter(PopError code, const QString& sentence) {
  EndHandover(HandoverOutcome::Refused);
  events_.Error(static_cast<int>(code), redaction_.WithReply(sentence, reply_));
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
  buffer_.append(bytes);
  if (stage_ < Stage::Envelope) received_ += bytes.size();
  if (received_ > kMaxReply) {
    Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。サーバー名とポート番号を"
                                    "確認してください。"));
    return;
  }
  while (!Finished() && ReadReply()) {
  }
}

// Takes one line; a reply is complete with the line that has a blank after its code.
bool SmtpSession::ReadReply() {
  const qsizetype end = buffer_.indexOf('\n');
  if (end < 0 || reply_.size() > kMaxReply) {
    if (buffer_.size() + reply_.size() <= kMaxReply) return false;
    Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。サーバー名とポート番号を"
                                    "確認してください。"));
    return false;
  }
  const QByteArray line = buffer_.first(end).trimmed();
  buffer_.remove(0, end + 1);
  bool isCode = false;
  const int code = line.left(3).toInt(&isCode);
  // All lines of a reply bear its code (RFC 5321 section 4.2.1).
  if (!isCode || code < 200 || code > 599 ||
      (line.size() > 3 && line[3] != ' ' && line[3] != '-') ||
      (!reply_.isEmpty() && !reply_.startsWith(line.first(3)))) {
    reply_ = line;
    Fail(PopError::Protocol,
         redaction_.WithReply(
             Ui::tr("サーバーの応答を理解できません。サーバー名とポート番号を確認して"
                    "ください。"),
             line));
    return false;
  }
  if (!reply_.isEmpty()) reply_ += '\n';
  reply_ += line;
  if (line.size() > 3 && line[3] == '-') return true;
  ++replies_;
  TakeReply(code);
  reply_.clear();
  return true;
}

void SmtpSession::TakeReply(int code) {
  switch (stage_) {
    case Stage::Greeting:
      if (code != 220) {
        LeaveAfter(PopError::Refused, Ui::tr("サーバーに接続を断られました。しばらくしてから"
                                             "もう一度送信してください。"));
        return;
      }
      stage_ = Stage::Ehlo;
      Send("EHLO [127.0.0.1]");
      return;
    case Stage::Ehlo:
      if (code != 250) {
        stage_ = Stage::Helo;
        Send("HELO localhost");
        return;
      }
      TakeExtensions();
      Greeted();
      return;
    case Stage::Helo:
      if (code != 250) {
        LeaveAfter(PopError::Refused, Ui::tr("サーバーに接続を断られました。"));
      } else {
        extensions_.clear();
        Greeted();
      }
      return;
    case Stage::StartTls:
      if (code != 220) {
        LeaveAfter(PopError::Tls, Ui::tr("暗号化を始められません。"));
      } else if (!buffer_.isEmpty()) {
        Fail(PopError::Protocol, Ui::tr("暗号化の前に余分なデータが届きました。通信が改ざん"
                                        "されているおそれがあります。"));
      } else {
        stage_ = Stage::Handshake;
        startTls_();
      }
      return;
    case Stage::Auth:
      GoOnWithAuth(code);
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
      if (awaited_ > 0) {
        --awaited_;
      } else {
        stage_ = Stage::Finished;
      }
      return;
    default:
      Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。"));
  }
}

void SmtpSession::TakeExtensions() {
  extensions_.clear();
  for (const QByteArray& line : reply_.split('\n')) extensions_.append(line.mid(4).toUpper());
}

void SmtpSession::Greeted() {
  if (job_.security == Security::StartTls && !encrypted_) {
    if (!extensions_.contains("STARTTLS")) {
      Fail(PopError::Tls, Ui::tr("サーバーがSTARTTLSに対応していません。アカウントの送信の"
                                 "セキュリティを確認してください。"));
      return;
    }
    stage_ = Stage::StartTls;
    Send("STARTTLS");
  } else if (job_.authenticate) {
    BeginAuth();
  } else {
    BeginEnvelope();
  }
}

void SmtpSession::TlsEstablished() {
  if (stage_ != Stage::Handshake) return;
  encrypted_ = true;
  extensions_.clear();  // what was learnt in clear may have been anyone's word
  stage_ = Stage::Ehlo;
  Send("EHLO [127.0.0.1]");
}

void SmtpSession::BeginAuth() {
  QByteArrayList offered;
  for (const QByteArray& extension : extensions_) {
    if (extension.startsWith("AUTH ") || extension.startsWith("AUTH=")) {
      offered += extension.mid(5).split(' ');
    }
  }
  mechanism_ = ChooseMechanism(offered, encrypted_);
  if (mechanism_ == SaslMechanism::None) {
    Fail(PopError::Login, Ui::tr("サーバーが送信時の認証に対応していません。アカウントの送信の"
                                 "設定を確認してください。"));
    return;
  }
  stage_ = Stage::Auth;
  authStep_ = 0;
  if (mechanism_ == SaslMechanism::Plain) {
    Send("AUTH PLAIN " + SaslResponse(mechanism_, 0, {}, job_.user, job_.password).toBase64());
    ++authStep_;
  } else {
    Send("AUTH " + MechanismName(mechanism_));
  }
}

void SmtpSession::GoOnWithAuth(int code) {
  if (code == 235) {
    BeginEnvelope();
  } else if (code == 334 && authStep_ < 2) {
    const QByteArray challenge = QByteArray::fromBase64(reply_.mid(4));
    const QByteArray response =
        SaslResponse(mechanism_, authStep_++, challenge, job_.user, job_.password);
    redaction_.Add(response.sliced(response.lastIndexOf(' ') + 1));
    Send(response.toBase64());
  } else {
    LeaveAfter(PopError::Login,
               Ui::tr("ログインできません。ユーザー名とパスワードを確認してください。"));
  }
}

void SmtpSession::BeginEnvelope() {
  if (job_.loginOnly) {
    Leave();
    return;
  }
  if (job_.recipients.isEmpty()) {
    Fail(PopError::Refused, Ui::tr("宛先がありません。"));
    return;
  }
  QByteArrayList paths;
  bool needsUtf8 = false;
  if (!TakeAddresses(paths, needsUtf8)) return;
  wire_ = WireMessage(job_.source);
  const QByteArray sender = paths.takeFirst();
  QByteArray mail = "MAIL FROM:<" + (IsReceipt(job_.source) ? QByteArray() : sender) + '>';
  for (const QByteArray& extension : extensions_) {
    if (extension != "SIZE" && !extension.startsWith("SIZE ")) continue;
    const qint64 limit = extension.mid(5).toLongLong();
    if (limit > 0 && wire_.size() > limit) {
      Fail(PopError::Refused,
           Ui::tr("メッセージが大きすぎます。サーバーが受け付けるのは%1バイトまでです。")
               .arg(limit));
      return;
    }
    mail += " SIZE=" + QByteArray::number(wire_.size());
  }
  if (extensions_.contains("8BITMIME") && HasEightBit(wire_)) mail += " BODY=8BITMIME";
  if (needsUtf8) mail += " SMTPUTF8";
  envelope_.push_back(mail);
  for (const QByteArray& path : paths) envelope_.push_back("RCPT TO:<" + path + '>');
  stage_ = Stage::Envelope;
  SendEnvelope();
}

// The sender's and the recipients' paths; false when one of them cannot be given to this server.
bool SmtpSession::TakeAddresses(QByteArrayList& paths, bool& needsUtf8) {
  for (const QString& address : QStringList{job_.from} + job_.recipients) {
    const std::optional<EnvelopeAddress> path = ToEnvelope(address);
    if (!path || address == kUnknownAddress) {
      Fail(PopError::Refused, Ui::tr("送信できないアドレスです: ") + ServerWords(address.toUtf8()));
      return false;
    }
    if (path->needsUtf8 && !extensions_.contains("SMTPUTF8")) {
      Fail(PopError::Refused,
           Ui::tr("アドレス「%1」の@より前に、このサーバーが扱えない文字があります（SMTPUTF8に"
                  "対応していません）。半角の英数字のアドレスを使ってください。")
               .arg(address));
      return false;
    }
    needsUtf8 = needsUtf8 || path->needsUtf8;
    // Who stands in two rows gets one copy; the sender comes first and may be a recipient.
    const bool isTwice = !paths.isEmpty() &&
                         std::any_of(paths.begin() + 1, paths.end(), [&](const QByteArray& other) {
                           return IsSameMailbox(other, path->path);
                         });
    if (!isTwice) paths.append(path->path);
  }
  return true;
}

// The message itself is never sent ahead: a recipient may still be refused.
void SmtpSession::SendEnvelope() {
  const bool pipelining = extensions_.contains("PIPELINING");
  QByteArray lines;
  do {
    lines += envelope_.front() + "\r\n";
    envelope_.pop_front();
    ++awaited_;
  } while (pipelining && !envelope_.empty());
  send_(lines);
}

// Replies come in the order of the commands: the sender's, then each recipient's.
void SmtpSession::TakeEnvelopeReply(int code) {
  --awaited_;
  const qsizetype command = answered_++;
  if (code == kClosing) {
    LeaveAfter(PopError::Refused, Ui::tr("メッセージの送信を断られました。"));
    return;
  }
  if (code / 100 != 2) {
    if (command == 0) {
      LeaveAfter(PopError::Refused,
                 Ui::tr("差出人のアドレス「%1」をサーバーに断られました。").arg(job_.from));
      return;
    }
    const QString& address = job_.recipients[command - 1];
    events_.RecipientRefused(address, redaction_.Words(reply_));
    refusals_.append(redaction_.WithReply(address, reply_));
  }
  if (awaited_ > 0) return;
  if (envelope_.empty()) {
    EnvelopeDone();
  } else {
    SendEnvelope();
  }
}

void SmtpSession::EnvelopeDone() {
  if (!refusals_.isEmpty()) {
    events_.Error(static_cast<int>(PopError::Refused),
                  Ui::tr("宛先をサーバーに断られました。アドレスを確認してください。") +
                      refusals_.join(u'、'));
    Leave();
    return;
  }
  if (!buffer_.isEmpty()) {  // what no command asked for would be taken for a later answer
    Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。"));
    return;
  }
  if (!events_.BeginHandover()) {
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
  } else if (!buffer_.isEmpty()) {  // no answer to a message that has not been sent
    Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。"));
  } else {
    SendBody();
  }
}

// The answer to the end mark. One that comes before it ends the connection: what would follow were
// taken for text of the message.
void SmtpSession::TakeDecision(int code) {
  const int kind = code / 100;
  if (!EndMarkGiven()) {
    Fail(PopError::Refused,
         redaction_.WithReply(Ui::tr("メッセージの送信を断られました。"), reply_));
  } else if (kind == 2) {
    handingOver_ = false;
    events_.MessageSent(job_.source);
    Leave();
  } else if (kind == 4 || kind == 5) {
    LeaveAfter(PopError::Refused, Ui::tr("メッセージの送信を断られました。"));
  } else {
    Fail(PopError::Protocol,
         redaction_.WithReply(Ui::tr("サーバーの応答を理解できません。"), reply_));
  }
}

void SmtpSession::SendBody() {
  stage_ = Stage::Body;
  wire_ += ".\r\n";
  sent_ = 0;
  Drained();
}

// A large message goes out in slices, so that the windows stay alive and the progress is true.
void SmtpSession::Drained() {
  if (stage_ != Stage::Body || sent_ == wire_.size()) return;
  events_.Progress(0, wire_.size(), sent_);
  // The end mark is never torn: either all of it was given out or none.
  const qsizetype rest = wire_.size() - sent_;
  const qsizetype slice = rest < kSliceBytes + kEndMarkBytes ? rest : kSliceBytes;
  send_(wire_.sliced(sent_, slice));
  sent_ += slice;
  if (sent_ == wire_.size()) events_.Progress(0, sent_, sent_);
}

void SmtpSession::ConnectionLost() {
  if (Finished()) return;
  if (stage_ == Stage::Quit) {
    stage_ = Stage::Finished;
    return;
  }
  Fail(PopError::ConnectionLost,
       EndMarkGiven()
           ? Ui::tr("送信の確認を受け取る前に接続が切れました。届いている可能性もあります。")
           : Ui::tr("サーバーが接続を切りました。メッセージは送信待ちのまま残ります。"));
}

}  // namespace vorn
