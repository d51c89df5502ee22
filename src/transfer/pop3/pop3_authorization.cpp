#include "transfer/pop3/pop3_authorization.h"

#include <QCryptographicHash>
#include <utility>

#include "storage/ui.h"
#include "transfer/pop3/pop3_words.h"
#include "transfer/protocol/server_words.h"

namespace vorn {

void Pop3Authorization::Begin(const QByteArray& greeting) {
  timestamp_ = TimestampOf(greeting);
  pipeline_.Send("CAPA", Pop3Command::Capa);
}

std::optional<PopFailure> Pop3Authorization::TakeCapabilities(const QByteArray& capabilities) {
  pipeline_.GoAhead(IsCapability(capabilities, "PIPELINING"));
  offersUidl_ = IsCapability(capabilities, "UIDL");
  lacksTop_ = !capabilities.isEmpty() && !IsCapability(capabilities, "TOP");
  if (!tls_.IsDue()) {
    ChooseLogin(capabilities);
    return StartLogin();
  }
  if (!IsCapability(capabilities, "STLS")) return tls_.NotOffered();
  pipeline_.Send("STLS", Pop3Command::Stls);
  return std::nullopt;
}

std::optional<PopFailure> Pop3Authorization::BeginTls(bool ok, const QByteArray& line,
                                                      bool hasMore) {
  const std::optional<PopFailure> failure = TlsStep::TakeAnswer(ok, line, hasMore, redaction_);
  if (!failure) state_ = State::Handshake;
  return failure;
}

void Pop3Authorization::GoOnEncrypted() {
  tls_.Establish();
  state_ = State::Asking;
  pipeline_.Send("CAPA", Pop3Command::Capa);
}

// The plain login is what every server has. Another one is used where the server has none, and
// where it keeps the password from being read on the way.
void Pop3Authorization::ChooseLogin(const QByteArray& capabilities) {
  if (login_.apop) return;
  canSayUser_ = SaslExchange::FitsPlainLogin(login_.server.who) &&
                (capabilities.isEmpty() || IsCapability(capabilities, "USER"));
  SaslExchange exchange(CapabilityArguments(capabilities, "SASL"), tls_.IsEncrypted(),
                        login_.server.who);
  const SaslMechanism* best = exchange.Mechanism();
  maySayPassword_ =
      tls_.IsEncrypted() || best == nullptr || !best->hidesPassword || best->needsStoredPassword;
  // Servers that list no mechanism like USER refuse USER too, also when they announce it.
  const bool takesUser = canSayUser_ && best != nullptr && best->isPlainLogin;
  if (!takesUser) auth_ = std::move(exchange);
}

// Every step of AUTH waits for the server's "+", so that no line is longer than old servers take.
std::optional<PopFailure> Pop3Authorization::StartLogin() {
  for (const CredentialPart& part : kCredentialParts) {
    if (IsSafeArgument(login_.server.who.*part.text)) continue;
    return PopFailure{PopError::Login,
                      Ui::tr("ユーザー名かパスワードに改行などの使えない文字があります。")};
  }
  if (auth_.Mechanism() != nullptr) {
    pipeline_.Send(auth_.Begin(false, redaction_), Pop3Command::Auth);
  } else if (!SaslExchange::FitsPlainLogin(login_.server.who)) {
    return PopFailure{PopError::Login,
                      Ui::tr("サーバーがこのアカウントのログインの方法に対応していません。")};
  } else if (login_.apop) {
    return LogInByApop();
  } else {
    pipeline_.Send("USER " + login_.server.who.user.toUtf8(), Pop3Command::User);
  }
  return std::nullopt;
}

std::optional<PopFailure> Pop3Authorization::LogInByApop() {
  if (timestamp_.isEmpty()) {
    return PopFailure{PopError::Login, Ui::tr("サーバーがAPOPに対応していません。アカウントの受信の"
                                              "種類をPOP3に変えてください。")};
  }
  const QByteArray digest = QCryptographicHash::hash(
      timestamp_ + login_.server.who.password.toUtf8(), QCryptographicHash::Md5);
  redaction_.Add(digest.toHex());
  pipeline_.Send("APOP " + login_.server.who.user.toUtf8() + ' ' + digest.toHex(),
                 Pop3Command::Apop);
  return std::nullopt;
}

std::optional<PopFailure> Pop3Authorization::TakeChallenge(const QByteArray& line) {
  const std::optional<QByteArray> answer = auth_.Answer(line.mid(2), redaction_);
  if (!answer) return auth_.Broken(line, redaction_);
  pipeline_.SendMore(*answer);
  return std::nullopt;
}

std::optional<PopFailure> Pop3Authorization::TakeReply(Pop3Command command, bool ok,
                                                       const QByteArray& line, bool hasMore) {
  if (command == Pop3Command::Capa) return TakeCapabilities({});
  if (command == Pop3Command::Stls) return BeginTls(ok, line, hasMore);
  if (ok && command == Pop3Command::User) {
    pipeline_.Send("PASS " + login_.server.who.password.toUtf8(), Pop3Command::Pass);
    return std::nullopt;
  }
  if (ok && !auth_.TrustsServer()) return auth_.Broken(line, redaction_);
  if (ok) {
    state_ = State::LoggedIn;
    return std::nullopt;
  }
  return command == Pop3Command::Auth ? TryAnotherWay(line) : auth_.Refused(line, redaction_);
}

// A mechanism that is refused before anything was proved by it is not there for this user, whatever
// the server lists, and one that needs something kept for each user may not be. A server that keeps
// scrambled passwords may offer one that it cannot honour. What else is refused is the password: it
// is not offered again, lest the server locks the account.
std::optional<PopFailure> Pop3Authorization::TryAnotherWay(const QByteArray& line) {
  const bool isMissing = auth_.MayBeMissing();
  const bool isDoubtful = auth_.Mechanism()->needsStoredPassword;
  if (isMissing && auth_.TryNext()) return StartLogin();
  if (canSayUser_ && maySayPassword_ && (isMissing || isDoubtful)) {
    auth_ = {};
    return StartLogin();
  }
  return auth_.Refused(line, redaction_);
}

}  // namespace vorn
