#include "transfer/smtp/smtp_opening.h"

#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kRefusedLogin = 535;  // RFC 4954 section 6
constexpr int kNotInClear = 538;

// Not who logs in is refused but by which mechanism (RFC 4954 sections 4 and 6): it is not
// understood or not known, too weak, or needs encryption.
bool RefusesMechanism(int code) {
  return code == 501 || code == 504 || code == 534 || code == kNotInClear;
}

}  // namespace

void SmtpOpening::Send(Step step, const QByteArray& line) {
  step_ = step;
  send_(line + "\r\n");
}

SmtpOpening::Failure SmtpOpening::Refused(const QString& sentence, const QByteArray& reply) const {
  return {{PopError::Refused, redaction_.WithReply(sentence, reply)}, true};
}

std::optional<SmtpOpening::Failure> SmtpOpening::TakeReply(int code, const QByteArray& reply,
                                                           bool hasMore) {
  switch (step_) {
    case Step::Greeting:
      if (code != 220) {
        return Refused(Ui::tr("サーバーに接続を断られました。しばらくしてからもう一度送信して"
                              "ください。"),
                       reply);
      }
      Send(Step::Ehlo, "EHLO [127.0.0.1]");
      break;
    case Step::Ehlo:
      if (code == 250) {
        extensions_.Take(reply);
        return Greeted();
      }
      Send(Step::Helo, "HELO localhost");
      break;
    case Step::Helo:
      if (code != 250) return Refused(Ui::tr("サーバーに接続を断られました。"), reply);
      extensions_.Clear();
      return Greeted();
    case Step::StartTls:
      return TakeTlsAnswer(code == 220, reply, hasMore);
    case Step::Auth:
      return TakeAuthReply(code, reply);
  }
  return std::nullopt;
}

std::optional<SmtpOpening::Failure> SmtpOpening::Greeted() {
  if (tls_.IsDue()) {
    if (!extensions_.Has("STARTTLS")) return Failure{tls_.NotOffered(), false};
    Send(Step::StartTls, "STARTTLS");
    return std::nullopt;
  }
  if (authenticate_) return BeginAuth();
  state_ = State::Over;
  return std::nullopt;
}

std::optional<SmtpOpening::Failure> SmtpOpening::TakeTlsAnswer(bool ok, const QByteArray& reply,
                                                               bool hasMore) {
  const auto failure = TlsStep::TakeAnswer(ok, reply, hasMore, redaction_);
  if (failure) return Failure{*failure, !ok};
  state_ = State::Handshake;
  return std::nullopt;
}

void SmtpOpening::GoOnEncrypted() {
  tls_.Establish();
  state_ = State::Asking;
  extensions_.Clear();  // what was learnt in clear may have been anyone's word
  Send(Step::Ehlo, "EHLO [127.0.0.1]");
}

std::optional<SmtpOpening::Failure> SmtpOpening::BeginAuth() {
  auth_ = SaslExchange(extensions_.AuthMechanisms(), tls_.IsEncrypted(), server_.who);
  if (auth_.Mechanism() == nullptr) {
    return Failure{{PopError::Login, Ui::tr("サーバーが送信時の認証に対応していません。アカウントの"
                                            "送信の設定を確認してください。")},
                   false};
  }
  Send(Step::Auth, auth_.Begin(true, redaction_));
  return std::nullopt;
}

// A refused password is not offered again: servers lock accounts after a few wrong ones. One that
// was not offered yet is not what is refused.
std::optional<SmtpOpening::Failure> SmtpOpening::TakeAuthReply(int code, const QByteArray& reply) {
  if (code == 235 && auth_.TrustsServer()) {
    state_ = State::Over;
    return std::nullopt;
  }
  if (code == 334) {
    if (const auto answer = auth_.Answer(reply.mid(4), redaction_)) {
      Send(Step::Auth, *answer);
      return std::nullopt;
    }
  }
  if (code == 235 || code == 334) return Failure{auth_.Broken(reply, redaction_), false};
  const bool isMissing = RefusesMechanism(code) || (code == kRefusedLogin && auth_.MayBeMissing());
  if (isMissing && auth_.TryNext(code == kNotInClear)) {
    Send(Step::Auth, auth_.Begin(true, redaction_));
    return std::nullopt;
  }
  return Failure{auth_.Refused(reply, redaction_), true};
}

}  // namespace vorn
