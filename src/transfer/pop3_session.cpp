#include "transfer/pop3_session.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QList>
#include <algorithm>
#include <utility>

#include "mail/codec/header_fields.h"
#include "mail/message_identity.h"
#include "storage/ui.h"
#include "transfer/announced_size.h"
#include "transfer/pop3_words.h"
#include "transfer/server_words.h"

namespace vorn {
namespace {

// What is asked ahead. On a distant server the window is what limits the speed.
constexpr size_t kWindowCommands = 2048;
constexpr qint64 kWindowBytes = 32 * 1024 * 1024;
// How long one call may work through known messages before the windows get their turn.
constexpr qint64 kWorkMs = 10;
constexpr int kProgressSteps = 1000;
constexpr qsizetype kMaxBeforeLogin = 64 * 1024;
// Lists of some millions of messages.
constexpr qsizetype kMaxList = 128 * 1024 * 1024;
constexpr qsizetype kMaxUidl = 512 * 1024 * 1024;

// The header block of a message with the empty line that ends it.
QByteArray HeaderOf(const QByteArray& source) {
  if (source.startsWith("\r\n") || source.startsWith('\n')) return {};
  for (qsizetype end = source.indexOf('\n'); end >= 0; end = source.indexOf('\n', end + 1)) {
    const QByteArrayView rest = QByteArrayView(source).sliced(end + 1);
    if (rest.startsWith('\n')) return source.first(end + 2);
    if (rest.startsWith("\r\n")) return source.first(end + 3);
  }
  return source;
}

// Gateways write fields of their own, anew each time.
bool IsSameAnswer(const QByteArray& first, const QByteArray& second) {
  const QByteArrayView name = "MESSAGE-ID:";
  const QByteArray id = MimeCodec::HeaderField(second, name);
  return first == second || (id.contains('@') && MimeCodec::HeaderField(first, name) == id);
}

}  // namespace

Pop3Session::Pop3Session(Pop3Login login, PopEvents& events, std::function<void(QByteArray)> send,
                         std::function<void()> startTls)
    : login_(std::move(login)),
      redaction_(login_.user, login_.password),
      events_(events),
      send_(std::move(send)),
      startTls_(std::move(startTls)) {}

void Pop3Session::Fail(PopError code, const QString& text) {
  events_.Error(static_cast<int>(code), text);
  Finish();
}

void Pop3Session::Send(const QByteArray& line, Pending pending) {
  pending_.push_back(pending);
  send_(line + "\r\n");
}

void Pop3Session::Receive(QByteArrayView bytes) {
  if (!loggedIn_) {
    received_ += bytes.size();
    if (received_ > kMaxBeforeLogin) {
      Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。サーバー名とポート番号を"
                                      "確認してください。"));
      return;
    }
  }
  reader_.Feed(bytes);
  while (!Finished() && ReadReply()) {
  }
  if (stage_ == Stage::Transfer && inBody_) ReportProgress(reader_.Body().size());
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

bool Pop3Session::IsMultiLine(Command command) const {
  switch (command) {
    case Command::Capa:
    case Command::List:
    case Command::Uidl:
    case Command::Top:
    case Command::Retr:
      return true;
    default:
      return false;
  }
}

// Reads one status line or goes on in a body; false when more bytes are needed.
bool Pop3Session::ReadReply() {
  if (inBody_) {
    switch (reader_.NextBody()) {
      case Pop3ReplyReader::Event::Body: {
        const Pending pending = pending_.front();
        pending_.pop_front();
        inBody_ = false;
        ++replies_;
        TakeBody(pending, reader_.TakeBody());
        return true;
      }
      case Pop3ReplyReader::Event::TooLong:
        Fail(PopError::Protocol, Ui::tr("大きすぎるメッセージなので受信できません。"));
        return false;
      default:
        return false;
    }
  }
  QByteArray line;
  switch (reader_.NextLine(line)) {
    case Pop3ReplyReader::Event::Line:
      break;
    case Pop3ReplyReader::Event::TooLong:
      Fail(PopError::Protocol, Ui::tr("サーバーの応答を理解できません。サーバー名とポート番号を"
                                      "確認してください。"));
      return false;
    default:
      return false;
  }
  const bool ok = line.startsWith("+OK");
  if (stage_ == Stage::Password && (line == "+" || line.startsWith("+ ")) && !pending_.empty() &&
      pending_.front().command == Command::Auth) {
    GoOnWithAuth(line);
    return true;
  }
  if ((!ok && !line.startsWith("-ERR")) || (stage_ != Stage::Greeting && pending_.empty())) {
    Fail(PopError::Protocol,
         redaction_.WithReply(
             Ui::tr("サーバーの応答を理解できません。サーバー名とポート番号を確認して"
                    "ください。"),
             line));
    return false;
  }
  if (stage_ == Stage::Greeting) {
    if (!ok) {
      Fail(PopError::Refused,
           redaction_.WithReply(
               Ui::tr("サーバーに接続を断られました。しばらくしてからもう一度受信して"
                      "ください。"),
               line));
      return false;
    }
    timestamp_ = TimestampOf(line);
    stage_ = Stage::Capabilities;
    Send("CAPA", {Command::Capa});
    return true;
  }
  const Pending pending = pending_.front();
  if (ok && IsMultiLine(pending.command)) {
    inBody_ = true;
    BeginBody(pending);
    return true;
  }
  pending_.pop_front();
  ++replies_;
  TakeReply(pending, ok, line);
  return true;
}

void Pop3Session::BeginBody(const Pending& pending) {
  switch (pending.command) {
    case Command::List:
      return reader_.BeginBody(0, kMaxList);
    case Command::Uidl:
      return reader_.BeginBody(0, kMaxUidl);
    case Command::Retr:
      return reader_.BeginBody(messages_[pending.message].size);
    default:
      return reader_.BeginBody(0);
  }
}

void Pop3Session::TakeReply(const Pending& pending, bool ok, const QByteArray& line) {
  switch (pending.command) {
    case Command::Capa:
      GreetedAndAsked(QByteArray());
      break;
    case Command::Stls:
      StartTls(ok, line);
      break;
    case Command::Auth:
      if (ok) {
        LoggedIn();
      } else if (auth_.Mechanism() == SaslMechanism::CramMd5 && offersUser_) {
        // A server that keeps scrambled passwords offers this mechanism and cannot honour it.
        auth_ = {};
        Login();
      } else {
        LoginRefused(line);
      }
      break;
    case Command::User:
    case Command::Pass:
    case Command::Apop:
      if (!ok) {
        LoginRefused(line);
      } else if (pending.command == Command::User) {
        Send("PASS " + login_.password.toUtf8(), {Command::Pass});
      } else {
        LoggedIn();
      }
      break;
    case Command::List:
      Fail(PopError::Refused,
           redaction_.WithReply(Ui::tr("メッセージの一覧を取得できません。"), line));
      break;
    case Command::Uidl:
      if (offersUidl_) {
        // Under other identifiers all that is stored would be received again.
        Fail(PopError::Refused,
             redaction_.WithReply(Ui::tr("メッセージの一覧を取得できません。"), line));
      } else {
        ListingDone();  // an old server: messages are told apart by their contents
      }
      break;
    case Command::Top:
      if (stops_.count(pending.message) != 0) {
        EndStop(pending.message, {});
        break;
      }
      if (!hasTop_) lacksTop_ = true;
      FetchUntested(pending.message);
      break;
    case Command::Retr:
      bytesAsked_ -= messages_[pending.message].size;
      bytesDone_ += messages_[pending.message].size;
      events_.Error(static_cast<int>(PopError::Refused),
                    redaction_.WithReply(Ui::tr("メッセージを受信できません。"), line));
      break;
    case Command::Dele:
      if (ok) {
        ++marked_;
      } else {
        events_.Error(static_cast<int>(PopError::Refused),
                      redaction_.WithReply(Ui::tr("サーバーのメッセージを削除できません。"), line));
      }
      break;
    case Command::Quit:
      if (ok) {
        deleted_ = marked_;
      } else if (marked_ > 0) {
        events_.Error(static_cast<int>(PopError::Refused),
                      redaction_.WithReply(Ui::tr("サーバーのメッセージを削除できません。"), line));
      }
      Finish();
      break;
  }
}

void Pop3Session::TakeBody(const Pending& pending, QByteArray body) {
  switch (pending.command) {
    case Command::Capa:
      GreetedAndAsked(body);
      break;
    case Command::List:
      list_ = std::move(body);
      if (!pipelining_) Send("UIDL", {Command::Uidl});
      break;
    case Command::Uidl:
      uidl_ = std::move(body);
      hasUidl_ = true;
      ListingDone();
      break;
    case Command::Top:
      hasTop_ = true;
      if (stops_.count(pending.message) != 0) {
        EndStop(pending.message, body);
      } else if (IsWanted(pending.message, body)) {
        Fetch(pending.message);
      } else {
        bytesDone_ += messages_[pending.message].size;
      }
      break;
    case Command::Retr:
      MessageDone(pending.message, body);
      break;
    default:
      break;
  }
}

void Pop3Session::LoggedIn() {
  loggedIn_ = true;
  if (login_.loginOnly) {
    stage_ = Stage::Quit;
    Send("QUIT", {Command::Quit});
    return;
  }
  stage_ = Stage::Listing;
  Send("LIST", {Command::List});
  if (pipelining_) Send("UIDL", {Command::Uidl});
}

QString Pop3Session::MessageId(const QByteArray& uidl) const {
  return ScopedMessageId(login_.user, login_.server, uidl);
}

void Pop3Session::ListingDone() {
  messages_ = ReadMailbox(list_, uidl_);
  list_.clear();
  uidl_.clear();
  for (const Pop3Message& message : messages_) bytesTotal_ += message.size;
  if (!TellListing()) return Finish();
  wantsHeaders_ = events_.WantsHeaders();
  stage_ = Stage::Transfer;
}

bool Pop3Session::TellListing() {
  if (!hasUidl_ && messages_.empty()) return true;  // there is nothing to refuse names for
  if (!hasUidl_) return events_.MailboxListed(MessageId({}), std::nullopt);
  QList<ListedMessage> listed;
  for (const Pop3Message& message : messages_) {
    if (!message.uidl.isEmpty()) listed.append({MessageId(message.uidl), message.size});
  }
  return events_.MailboxListed(MessageId({}), listed);
}

bool Pop3Session::WindowHasRoom() const {
  if (!pipelining_) return pending_.empty();
  return pending_.size() < kWindowCommands && bytesAsked_ < kWindowBytes;
}

bool Pop3Session::Work() {
  if (stage_ == Stage::Deletion) SendDeletions();
  if (stage_ != Stage::Transfer) return false;
  QElapsedTimer timer;
  timer.start();
  while (next_ < messages_.size() && !stopped_ && WindowHasRoom()) {
    if (timer.elapsed() > kWorkMs) return true;
    ConsiderNext();
  }
  if (pending_.empty() && (stopped_ || next_ >= messages_.size())) FinishTransfer();
  return false;
}

void Pop3Session::ConsiderNext() {
  const size_t message = next_++;
  const Pop3Message& entry = messages_[message];
  bool wantsHeader = wantsHeaders_;
  if (!entry.uidl.isEmpty()) {
    bool exists = false;
    bool deleteOnServer = false;
    events_.AlreadyStored(MessageId(entry.uidl), exists, deleteOnServer);
    if (exists) {
      bytesDone_ += entry.size;
      ReportProgress(0);
      if (deleteOnServer) doomed_.push_back(message);
      return;
    }
    wantsHeader = wantsHeader || events_.WantsHeader(MessageId(entry.uidl));
  }
  if (wantsHeader && lacksTop_) {
    FetchUntested(message);
  } else if (wantsHeader) {
    asksForHeaders_ = true;
    AskForHeader(message);
  } else {
    Fetch(message);
  }
}

void Pop3Session::AskForHeader(size_t message) {
  Send("TOP " + QByteArray::number(messages_[message].number) + " 0", {Command::Top, message});
}

void Pop3Session::Fetch(size_t message) {
  bytesAsked_ += messages_[message].size;
  Send("RETR " + QByteArray::number(messages_[message].number), {Command::Retr, message});
}

// A server that does not give the header alone: the rules see it once the message is here.
void Pop3Session::FetchUntested(size_t message) {
  if (wantsHeaders_ && !std::exchange(toldOfTop_, true)) {
    events_.Log(0,
                Ui::tr("サーバーがヘッダーだけの受信（TOP）に対応していないため、メッセージ条件は"
                       "メッセージを受信してから調べます。"));
  }
  untested_.resize(messages_.size(), false);
  untested_[message] = wantsHeaders_;
  Fetch(message);
}

// What a header tells: that the message is stored, or that a rule stops it.
bool Pop3Session::IsWanted(size_t message, const QByteArray& header) {
  const QByteArray& uidl = messages_[message].uidl;
  bool deleteOnServer = false;
  if (!uidl.isEmpty() && events_.WantsHeader(MessageId(uidl)) &&
      events_.IsStored(MessageId(uidl), header, deleteOnServer)) {
    if (deleteOnServer) doomed_.push_back(message);
    return false;
  }
  if (!wantsHeaders_ || !IsStopped(header, false, deleteOnServer)) return true;
  if (deleteOnServer) {
    stops_.emplace(message, header);
    AskForHeader(message);
  }
  return false;
}

bool Pop3Session::IsStopped(const QByteArray& header, bool isTornOff, bool& deleteOnServer) {
  bool stop = false;
  deleteOnServer = false;
  events_.ReceiveStopTest(header, isTornOff, stop, deleteOnServer);
  return stop;
}

// One answer is not enough to delete unseen: it may have been another message's.
void Pop3Session::EndStop(size_t message, const QByteArray& header) {
  if (stops_[message] == header) {
    doomed_.push_back(message);
  } else {
    events_.StopTakenBack(StopDoubt::OtherHeader);
  }
  stops_.erase(message);
}

void Pop3Session::MessageDone(size_t message, const QByteArray& data) {
  Pop3Message& entry = messages_[message];
  bytesAsked_ -= entry.size;
  bytesDone_ += entry.size;
  ReportProgress(0);
  if (stopped_) return;

  const SizeFit fit = FitOf(data, entry.size);
  if (IsExact(fit) && !std::exchange(hasExactSizes_, true)) KeepNear();
  // A server whose sizes were exact so far is held to them, and so is one that was wrong before.
  const bool isHeld =
      hasExactSizes_ || (!entry.uidl.isEmpty() && events_.HasDoubt(MessageId(entry.uidl)));
  const bool isTornOff = fit == SizeFit::Off || (fit == SizeFit::Near && isHeld) || HasHole(data);
  // A header alone may be the late answer to another command.
  const bool isLate = isTornOff && asksForHeaders_ && HeaderOf(data).size() == data.size();
  if (isLate && !IsRepeated(message, data)) return;
  bool deleteOnServer = false;
  QByteArray uidl = entry.uidl;
  if (uidl.isEmpty()) {
    uidl = "sha256:" + QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
  }
  // Before anything comes of it, for whatever comes of it may have to be taken back.
  const bool isNear = fit == SizeFit::Near && !isTornOff;
  if (isNear) near_.push_back({message, MessageId(uidl)});
  if (entry.uidl.isEmpty()) {
    bool exists = false;
    events_.AlreadyStored(MessageId(uidl), exists, deleteOnServer);
    if (exists) {
      // What is named by its contents is the same as another one that was torn off.
      if (isTornOff) {
        events_.TornOffAgain();
      } else if (deleteOnServer) {
        doomed_.push_back(message);
      }
      return;
    }
    deleteOnServer = false;
  }
  const bool isUntested = message < untested_.size() && untested_[message];
  if (isUntested && IsStopped(HeaderOf(data), isTornOff, deleteOnServer)) {
    if (deleteOnServer) doomed_.push_back(message);
    if (isNear) near_.back().isStopped = true;
    if (isTornOff) events_.Doubted(MessageId(uidl));
    return;
  }
  stopped_ = !events_.MessageArrived(MessageId(uidl), data, isTornOff, deleteOnServer);
  if (deleteOnServer && !stopped_) doomed_.push_back(message);
}

// Those that came before it was known that the server's sizes are exact.
void Pop3Session::KeepNear() {
  for (const NearMessage& near : std::exchange(near_, {})) {
    const auto doomed = std::find(doomed_.begin(), doomed_.end(), near.message);
    const bool wasDoomed = doomed != doomed_.end();
    if (wasDoomed) doomed_.erase(doomed);
    if (!near.isStopped) {
      events_.TakeBack(near.id);
      continue;
    }
    events_.Doubted(near.id);
    if (wasDoomed) events_.StopTakenBack(StopDoubt::OtherSize);
  }
}

// Asks once more. Where answers are out of step, another one comes.
bool Pop3Session::IsRepeated(size_t message, const QByteArray& data) {
  const auto [first, isFirst] = doubtful_.emplace(message, data);
  if (isFirst) {
    bytesDone_ -= messages_[message].size;
    Fetch(message);
    return false;
  }
  if (IsSameAnswer(first->second, data)) return true;
  Fail(PopError::Protocol, Ui::tr("サーバーの応答の順序が乱れています。"));
  return false;
}

// Nothing is marked before everything is durable: there are servers that delete what is marked
// also when the connection breaks.
void Pop3Session::FinishTransfer() {
  if (!events_.MakeDurable()) {
    Finish();
    return;
  }
  stage_ = Stage::Deletion;
  SendDeletions();
}

void Pop3Session::SendDeletions() {
  while (!doomed_.empty() && WindowHasRoom()) {
    const size_t message = doomed_.front();
    doomed_.pop_front();
    Send("DELE " + QByteArray::number(messages_[message].number), {Command::Dele, message});
  }
  if (!pending_.empty()) return;
  stage_ = Stage::Quit;
  Send("QUIT", {Command::Quit});
}

void Pop3Session::ReportProgress(qint64 inFlight) {
  const qint64 done = bytesDone_ + inFlight;
  const qint64 step = bytesTotal_ > 0 ? done * kProgressSteps / bytesTotal_ : 0;
  if (step == lastProgress_) return;
  lastProgress_ = step;
  events_.Progress(0, bytesTotal_, qMin(done, bytesTotal_));
}

}  // namespace vorn
