#include "transfer/pop3/pop3_retrieval.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QList>
#include <algorithm>
#include <utility>

#include "mail/codec/header/header_fields.h"
#include "mail/store/message_identity.h"
#include "storage/ui.h"
#include "transfer/pop3/announced_size.h"

namespace vorn {
namespace {

constexpr qint64 kWindowBytes = 32 * 1024 * 1024;  // what is asked ahead
// How long one call may work through known messages before the windows get their turn.
constexpr qint64 kWorkMs = 10;

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

QByteArray NameByContents(const QByteArray& data) {
  return "sha256:" + QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
}

}  // namespace

QString Pop3Retrieval::MessageId(const QByteArray& uidl) const {
  return ScopedMessageId(login_.server.who.user, login_.server.host, uidl);
}

bool Pop3Retrieval::Begin(const QByteArray& list, const std::optional<QByteArray>& uidl,
                          bool lacksTop) {
  top_.isLacking = lacksTop;
  messages_ = ReadMailbox(list, uidl.value_or(QByteArray()));
  for (const Pop3Message& message : messages_) progress_.Expect(message.size);
  if (!TellMailbox(uidl.has_value())) return false;
  wantsHeaders_ = events_.WantsHeaders();
  return true;
}

bool Pop3Retrieval::TellMailbox(bool hasUidl) {
  if (!hasUidl && messages_.empty()) return true;  // there is nothing to refuse names for
  if (!hasUidl) return events_.MailboxListed(MessageId({}), std::nullopt);
  QList<ListedMessage> listed;
  for (const Pop3Message& message : messages_) {
    if (!message.uidl.isEmpty()) listed.append({MessageId(message.uidl), message.size});
  }
  return events_.MailboxListed(MessageId({}), listed);
}

bool Pop3Retrieval::AskForMore() {
  QElapsedTimer timer;
  timer.start();
  while (next_ < messages_.size() && !stopped_ && pipeline_.HasRoom() &&
         progress_.UnderWay() < kWindowBytes) {
    if (timer.elapsed() > kWorkMs) return true;
    ConsiderNext();
  }
  return false;
}

bool Pop3Retrieval::IsDone() const {
  return pipeline_.IsEmpty() && (stopped_ || next_ >= messages_.size());
}

void Pop3Retrieval::ConsiderNext() {
  const size_t message = next_++;
  const Pop3Message& entry = messages_[message];
  bool wantsHeader = wantsHeaders_;
  if (!entry.uidl.isEmpty()) {
    if (const auto copy = events_.AlreadyStored(MessageId(entry.uidl))) {
      progress_.Skip(entry.size);
      ReportProgress(0);
      Doom(message, *copy);
      return;
    }
    wantsHeader = wantsHeader || events_.WantsHeader(MessageId(entry.uidl));
  }
  if (wantsHeader && top_.isLacking) {
    FetchUntested(message);
  } else if (wantsHeader) {
    top_.isAsked = true;
    AskForHeader(message);
  } else {
    Fetch(message);
  }
}

void Pop3Retrieval::Doom(size_t message, ServerCopy copy) {
  if (copy == ServerCopy::Deleted) doomed_.push_back(message);
}

void Pop3Retrieval::AskForHeader(size_t message) {
  pipeline_.Send("TOP " + QByteArray::number(messages_[message].number) + " 0", Pop3Command::Top,
                 message);
}

void Pop3Retrieval::Fetch(size_t message) {
  progress_.Ask(messages_[message].size);
  pipeline_.Send("RETR " + QByteArray::number(messages_[message].number), Pop3Command::Retr,
                 message);
}

// A server that does not give the header alone: the rules see it once the message is here.
void Pop3Retrieval::FetchUntested(size_t message) {
  if (wantsHeaders_ && !std::exchange(top_.isTold, true)) {
    session_.Log(
        Ui::tr("サーバーがヘッダーだけの受信（TOP）に対応していないため、メッセージ条件は"
               "メッセージを受信してから調べます。"));
  }
  if (wantsHeaders_) stopTests_.TestLater(message);
  Fetch(message);
}

// What a header tells: that the message is stored, or that a rule stops it.
bool Pop3Retrieval::IsWanted(size_t message, const QByteArray& header) {
  const QByteArray& uidl = messages_[message].uidl;
  if (!uidl.isEmpty() && events_.WantsHeader(MessageId(uidl))) {
    if (const auto copy = events_.StoredByHeader(MessageId(uidl), header)) {
      Doom(message, *copy);
      return false;
    }
  }
  if (!wantsHeaders_) return true;
  const auto stopped = events_.ReceiveStopTest(header, false);
  if (stopped == ServerCopy::Deleted) {
    stopTests_.Confirm(message, header);
    AskForHeader(message);
  }
  return !stopped;
}

// One answer is not enough to delete unseen: it may have been another message's.
void Pop3Retrieval::EndStop(size_t message, const QByteArray& header) {
  if (stopTests_.TakeSecond(message, header)) {
    doomed_.push_back(message);
  } else {
    events_.StopTakenBack(StopDoubt::OtherHeader);
  }
}

void Pop3Retrieval::TakeHeader(size_t message, const QByteArray& header) {
  top_.isAnswered = true;
  if (stopTests_.IsUnconfirmed(message)) {
    EndStop(message, header);
  } else if (IsWanted(message, header)) {
    Fetch(message);
  } else {
    progress_.Skip(messages_[message].size);
    ReportProgress(0);
  }
}

void Pop3Retrieval::HeaderRefused(size_t message) {
  if (stopTests_.IsUnconfirmed(message)) return EndStop(message, {});
  if (!top_.isAnswered) top_.isLacking = true;
  FetchUntested(message);
}

void Pop3Retrieval::MessageRefused(size_t message) {
  progress_.Arrive(messages_[message].size);
}

bool Pop3Retrieval::TakeMessage(size_t message, const QByteArray& data) {
  const Pop3Message& entry = messages_[message];
  progress_.Arrive(entry.size);
  ReportProgress(0);
  if (stopped_) return true;

  const SizeFit fit = FitOf(data, entry.size);
  if (IsExact(fit) && !std::exchange(hasExactSizes_, true)) KeepNear();
  // A server whose sizes were exact so far is held to them, and so is one that was wrong before.
  const bool isHeld =
      hasExactSizes_ || (!entry.uidl.isEmpty() && events_.HasDoubt(MessageId(entry.uidl)));
  const bool isTornOff = fit == SizeFit::Off || (fit == SizeFit::Near && isHeld) || HasHole(data);
  // A header alone may be the late answer to another command: it is asked for once more. Where
  // answers are out of step, another one comes.
  if (isTornOff && top_.isAsked && HeaderOf(data).size() == data.size()) {
    const auto [first, isFirst] = doubtful_.emplace(message, data);
    if (isFirst) progress_.Return(entry.size);
    if (isFirst) Fetch(message);
    if (isFirst || !IsSameAnswer(first->second, data)) return isFirst;
  }
  const QString id = MessageId(entry.uidl.isEmpty() ? NameByContents(data) : entry.uidl);
  // Before anything comes of it, for whatever comes of it may have to be taken back.
  const bool isNear = fit == SizeFit::Near && !isTornOff;
  if (isNear) near_.push_back({message, id});
  if (!entry.uidl.isEmpty() || !IsKnownByContents(message, id, isTornOff)) {
    Keep(message, id, data, isTornOff, isNear);
  }
  return true;
}

// Where the server gives no names: whether the same bytes are here.
bool Pop3Retrieval::IsKnownByContents(size_t message, const QString& id, bool isTornOff) {
  const auto copy = events_.AlreadyStored(id);
  // What is named by its contents is the same as another one that was torn off.
  if (copy && isTornOff) {
    events_.TornOffAgain();
  } else if (copy) {
    Doom(message, *copy);
  }
  return copy.has_value();
}

void Pop3Retrieval::Keep(size_t message, const QString& id, const QByteArray& data, bool isTornOff,
                         bool isNear) {
  if (stopTests_.IsUntested(message)) {
    if (const auto stopped = events_.ReceiveStopTest(HeaderOf(data), isTornOff)) {
      Doom(message, *stopped);
      if (isNear) near_.back().isStopped = true;
      if (isTornOff) events_.Doubted(id);
      return;
    }
  }
  const auto copy = events_.MessageArrived(id, data, isTornOff);
  stopped_ = !copy;
  if (copy) Doom(message, *copy);
}

// Those that came before it was known that the server's sizes are exact.
void Pop3Retrieval::KeepNear() {
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

bool Pop3Retrieval::AskForDeletions() {
  while (!doomed_.empty() && pipeline_.HasRoom()) {
    const size_t message = doomed_.front();
    doomed_.pop_front();
    pipeline_.Send("DELE " + QByteArray::number(messages_[message].number), Pop3Command::Dele,
                   message);
  }
  return !pipeline_.IsEmpty();
}

}  // namespace vorn
