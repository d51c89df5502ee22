// The beginning of a POP3 session: what the server can, encryption, and the login.

#include <QCryptographicHash>

#include "storage/ui.h"
#include "transfer/pop3_session.h"
#include "transfer/pop3_words.h"
#include "transfer/server_words.h"

namespace vorn {
// Once the server's capabilities are known, before and again after encryption.
void Pop3Session::GreetedAndAsked(const QByteArray& capabilities) {
  pipelining_ = IsCapability(capabilities, "PIPELINING");
  offersUidl_ = IsCapability(capabilities, "UIDL");
  lacksTop_ = !capabilities.isEmpty() && !IsCapability(capabilities, "TOP");
  if (login_.security != Security::StartTls || encrypted_) {
    ChooseLogin(capabilities);
    Login();
  } else if (IsCapability(capabilities, "STLS")) {
    Send("STLS", {Command::Stls});
  } else {
    Fail(PopError::Tls, Ui::tr("サーバーがSTARTTLSに対応していません。アカウントの受信の"
                               "セキュリティを確認してください。"));
  }
}

void Pop3Session::StartTls(bool ok, const QByteArray& line) {
  if (!ok) {
    Fail(PopError::Tls, redaction_.WithReply(Ui::tr("暗号化を始められません。"), line));
  } else if (reader_.HasUnread()) {
    // Whatever came in clear after the answer would be taken for the server's protected words.
    Fail(PopError::Protocol, Ui::tr("暗号化の前に余分なデータが届きました。通信が改ざんされて"
                                    "いるおそれがあります。"));
  } else {
    stage_ = Stage::Handshake;
    startTls_();
  }
}

void Pop3Session::TlsEstablished() {
  if (stage_ != Stage::Handshake) return;
  encrypted_ = true;
  stage_ = Stage::Capabilities;
  Send("CAPA", {Command::Capa});
}

// The plain login is what every server has. Another one is used where the server has none, and
// where it keeps the password from being read on the way.
void Pop3Session::ChooseLogin(const QByteArray& capabilities) {
  if (login_.apop) return;
  encrypted_ = encrypted_ || login_.security == Security::Tls;
  offersUser_ = capabilities.isEmpty() || IsCapability(capabilities, "USER");
  const QByteArrayList offered = CapabilityArguments(capabilities, "SASL");
  const SaslMechanism mechanism = ChooseMechanism(offered, encrypted_);
  const bool hidesPassword = !encrypted_ && mechanism == SaslMechanism::CramMd5;
  // Servers that list mechanisms without PLAIN refuse its equal, USER, also when they announce it.
  if (!offersUser_ || hidesPassword || !offered.contains("PLAIN")) {
    auth_ = SaslExchange(mechanism, login_.user, login_.password);
  }
}

// Every step waits for the server's "+", so that no line is longer than old servers take.
void Pop3Session::BeginAuth() {
  stage_ = Stage::Password;
  Send(auth_.Begin(false), {Command::Auth});
}

void Pop3Session::GoOnWithAuth(const QByteArray& line) {
  const auto answer = auth_.Answer(line.mid(2), redaction_);
  if (!answer) return LoginRefused(line);
  send_(*answer + "\r\n");
}

void Pop3Session::LoginRefused(const QByteArray& line) {
  Fail(PopError::Login,
       redaction_.WithReply(
           Ui::tr("ログインできません。ユーザー名とパスワードを確認してください。"), line));
}

void Pop3Session::Login() {
  if (!IsSafeArgument(login_.user) || !IsSafeArgument(login_.password)) {
    Fail(PopError::Login, Ui::tr("ユーザー名かパスワードに改行などの使えない文字があります。"));
    return;
  }
  if (auth_.Mechanism() != SaslMechanism::None) {
    BeginAuth();
    return;
  }
  if (!login_.apop) {
    stage_ = Stage::User;
    Send("USER " + login_.user.toUtf8(), {Command::User});
    return;
  }
  if (timestamp_.isEmpty()) {
    Fail(PopError::Login, Ui::tr("サーバーがAPOPに対応していません。アカウントの受信の種類を"
                                 "POP3に変えてください。"));
    return;
  }
  stage_ = Stage::Password;
  const QByteArray digest =
      QCryptographicHash::hash(timestamp_ + login_.password.toUtf8(), QCryptographicHash::Md5);
  redaction_.Add(digest.toHex());
  Send("APOP " + login_.user.toUtf8() + ' ' + digest.toHex(), {Command::Apop});
}

}  // namespace vorn
