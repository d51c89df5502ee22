#include "transfer/pop3/pop3_session.h"

#include <utility>

#include "storage/ui.h"
#include "transfer/protocol/server_words.h"

namespace vorn {
namespace {

constexpr qsizetype kMaxBeforeLogin = 64 * 1024;
// Lists of some millions of messages.
constexpr qsizetype kMaxList = 128 * 1024 * 1024;

bool IsMultiLine(Pop3Command command) {
  switch (command) {
    case Pop3Command::Capa:
    case Pop3Command::List:
    case Pop3Command::Uidl:
    case Pop3Command::Top:
    case Pop3Command::Retr:
      return true;
    default:
      return false;
  }
}

}  // namespace

Pop3Session::Pop3Session(Pop3Login login, PopEvents& events, std::function<void(QByteArray)> send,
                         std::function<void()> startTls)
    : login_(std::move(login)),
      redaction_(login_.server.who),
      events_(events),
      startTls_(std::move(startTls)),
      pipeline_(std::move(send)),
      authorization_(login_, redaction_, pipeline_),
      retrieval_(login_, events, pipeline_) {}

void Pop3Session::Fail(PopError code, const QString& text) {
  events_.Error(code, text);
  Finish();
}

// What no server of this protocol says.
void Pop3Session::FailStrangely(const QByteArray& line) {
  const QString sentence =
      Ui::tr("サーバーの応答を理解できません。サーバー名とポート番号を確認してください。");
  Fail(PopError::Protocol, line.isNull() ? sentence : redaction_.WithReply(sentence, line));
}

void Pop3Session::TellRefusal(const QString& sentence, const QByteArray& line) {
  events_.Error(PopError::Refused, redaction_.WithReply(sentence, line));
}

void Pop3Session::Receive(QByteArrayView bytes) {
  if (stage_ < Stage::Listing) received_ += bytes.size();
  if (received_ > kMaxBeforeLogin) return FailStrangely();
  reader_.Feed(bytes);
  while (!Finished() && ReadReply()) {
  }
  if (stage_ == Stage::Transfer && inBody_) retrieval_.ReportProgress(reader_.Body().size());
}

void Pop3Session::TlsEstablished() {
  if (stage_ != Stage::Handshake) return;
  stage_ = Stage::Authorization;
  authorization_.GoOnEncrypted();
}

void Pop3Session::ConnectionLost() {
  if (Finished()) return;
  if (stage_ == Stage::Quit) {
    // The store is durable; whether the server deleted is its business and asked again next time.
    Finish();
    return;
  }
  Fail(PopError::ConnectionLost,
       stage_ == Stage::Transfer
           ? Ui::tr("受信中に接続が切れました。受信済みのメッセージは保存されています。"
                    "もう一度受信してください。")
           : Ui::tr("サーバーが接続を切りました。しばらくしてからもう一度受信してください。"));
}

// Reads one status line or goes on in a body; false when more bytes are needed.
bool Pop3Session::ReadReply() {
  return inBody_ ? ReadBody() : ReadLine();
}

bool Pop3Session::ReadBody() {
  const Pop3ReplyReader::Event event = reader_.NextBody();
  if (event == Pop3ReplyReader::Event::TooLong) {
    pipeline_.Awaits(Pop3Command::Retr)
        ? Fail(PopError::Protocol, Ui::tr("大きすぎるメッセージなので受信できません。"))
        : FailStrangely();
  }
  if (event != Pop3ReplyReader::Event::Body) return false;
  inBody_ = false;
  ++replies_;
  const Pop3Pending pending = pipeline_.Take();
  TakeBody(pending, reader_.TakeBody());
  return true;
}

bool Pop3Session::ReadLine() {
  const Pop3ReplyReader::Event event = reader_.NextLine();
  if (event == Pop3ReplyReader::Event::TooLong) FailStrangely();
  if (event != Pop3ReplyReader::Event::Line) return false;
  const QByteArray line = reader_.Line();
  if (pipeline_.Awaits(Pop3Command::Auth) && (line == "+" || line.startsWith("+ "))) {
    GoOn(authorization_.TakeChallenge(line));
    return true;
  }
  const bool ok = line.startsWith("+OK");
  if ((!ok && !line.startsWith("-ERR")) || (stage_ != Stage::Greeting && pipeline_.IsEmpty())) {
    FailStrangely(line);
  } else if (stage_ == Stage::Greeting) {
    TakeGreeting(ok, line);
  } else if (ok && IsMultiLine(pipeline_.Next().command)) {
    inBody_ = true;
    BeginBody(pipeline_.Next());
  } else {
    ++replies_;
    const Pop3Pending pending = pipeline_.Take();
    TakeReply(pending, ok, line);
  }
  return true;
}

void Pop3Session::TakeGreeting(bool ok, const QByteArray& line) {
  if (!ok) {
    return Fail(PopError::Refused,
                redaction_.WithReply(Ui::tr("サーバーに接続を断られました。しばらくしてからもう一度"
                                            "受信してください。"),
                                     line));
  }
  stage_ = Stage::Authorization;
  authorization_.Begin(line);
}

void Pop3Session::GoOn(const std::optional<PopFailure>& failure) {
  if (failure) return Fail(failure->code, failure->text);
  switch (authorization_.GetState()) {
    case Pop3Authorization::State::Handshake:
      stage_ = Stage::Handshake;
      return startTls_();
    case Pop3Authorization::State::LoggedIn:
      return login_.loginOnly ? Leave() : BeginListing();
    default:
      return;
  }
}

void Pop3Session::BeginBody(const Pop3Pending& pending) {
  switch (pending.command) {
    case Pop3Command::List:
    case Pop3Command::Uidl:
      return reader_.BeginBody(0, kMaxList, Pop3ReplyReader::kMaxLine);
    case Pop3Command::Retr:
      return reader_.BeginBody(retrieval_.SizeOf(pending.message));
    default:
      return reader_.BeginBody(0);
  }
}

void Pop3Session::TakeReply(const Pop3Pending& pending, bool ok, const QByteArray& line) {
  const QString noList = Ui::tr("メッセージの一覧を取得できません。");
  switch (pending.command) {
    case Pop3Command::List:
      return Fail(PopError::Refused, redaction_.WithReply(noList, line));
    case Pop3Command::Uidl:
      // An old server's messages are told apart by their contents. Under other identifiers than
      // before all that is stored would be received again.
      if (!authorization_.OffersUidl()) return ListingDone(std::nullopt);
      return Fail(PopError::Refused, redaction_.WithReply(noList, line));
    case Pop3Command::Top:
      return retrieval_.HeaderRefused(pending.message);
    case Pop3Command::Retr:
      retrieval_.MessageRefused(pending.message);
      return TellRefusal(Ui::tr("メッセージを受信できません。"), line);
    case Pop3Command::Dele:
      if (!ok) return TellRefusal(Ui::tr("サーバーのメッセージを削除できません。"), line);
      ++marked_;
      return;
    case Pop3Command::Quit:
      if (ok) {
        deleted_ = marked_;
      } else if (marked_ > 0) {
        TellRefusal(Ui::tr("サーバーのメッセージを削除できません。"), line);
      }
      return Finish();
    default:
      return GoOn(authorization_.TakeReply(pending.command, ok, line, reader_.HasUnread()));
  }
}

void Pop3Session::TakeBody(const Pop3Pending& pending, QByteArray body) {
  switch (pending.command) {
    case Pop3Command::Capa:
      return GoOn(authorization_.TakeCapabilities(body));
    case Pop3Command::List:
      list_ = std::move(body);
      if (!pipeline_.GoesAhead()) pipeline_.Send("UIDL", Pop3Command::Uidl);
      return;
    case Pop3Command::Uidl:
      return ListingDone(body);
    case Pop3Command::Top:
      return retrieval_.TakeHeader(pending.message, body);
    default:
      if (retrieval_.TakeMessage(pending.message, body)) return;
      Fail(PopError::Protocol, Ui::tr("サーバーの応答の順序が乱れています。"));
  }
}

void Pop3Session::BeginListing() {
  stage_ = Stage::Listing;
  pipeline_.Send("LIST", Pop3Command::List);
  if (pipeline_.GoesAhead()) pipeline_.Send("UIDL", Pop3Command::Uidl);
}

void Pop3Session::ListingDone(const std::optional<QByteArray>& uidl) {
  const QByteArray list = std::exchange(list_, {});
  if (!retrieval_.Begin(list, uidl, authorization_.LacksTop())) return Finish();
  stage_ = Stage::Transfer;
}

bool Pop3Session::Work() {
  if (stage_ == Stage::Deletion) SendDeletions();
  if (stage_ != Stage::Transfer) return false;
  if (retrieval_.AskForMore()) return true;
  if (!retrieval_.IsDone()) return false;
  // Nothing is marked before everything is durable: there are servers that delete what is marked
  // also when the connection breaks.
  if (!events_.Retrieval().MakeDurable()) {
    Finish();
    return false;
  }
  stage_ = Stage::Deletion;
  SendDeletions();
  return false;
}

void Pop3Session::SendDeletions() {
  if (!retrieval_.AskForDeletions()) Leave();
}

void Pop3Session::Leave() {
  stage_ = Stage::Quit;
  pipeline_.Send("QUIT", Pop3Command::Quit);
}

}  // namespace vorn
