#include "transfer/transfer_events.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "mail/codec/message_date.h"
#include "mail/message_identity.h"
#include "mail/message_rows.h"
#include "mail/outbox.h"
#include "mail/stored_copy.h"
#include "objects/file_age.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/known_damage.h"
#include "storage/session_result.h"
#include "storage/sql_text.h"
#include "storage/time_text.h"
#include "storage/ui.h"
#include "transfer/check_plan.h"
#include "transfer/pop.h"

namespace vorn {
namespace {

const QString kNewFlags = QStringLiteral("001");  // new and unopened
const QDate kFirstMail(1982, 8, 13);              // of RFC 822
constexpr qint64 kClockOffS = 600;

// When the user's own server took the message in, which noted it above all others. Invalid where
// that cannot be right.
QDateTime ArrivalTime(const QByteArray& source) {
  const QDateTime time = ReceivedDate(source);
  const bool isPast = time < QDateTime::currentDateTimeUtc().addSecs(kClockOffS);
  return isPast && time.date() >= kFirstMail ? time : QDateTime();
}

}  // namespace

TransferEvents::TransferEvents(Context& context, CheckPlan& plan, const Pop& pop,
                               StatusPanel& panel, QObject* parent)
    : QObject(parent),
      context_(context),
      plan_(plan),
      pop_(pop),
      panel_(panel),
      store_(context),
      known_(context) {
  flushTimer_.setInterval(GroupSize::kMs);
  connect(&flushTimer_, &QTimer::timeout, this, &TransferEvents::Flush);
}

DiskPtr TransferEvents::Account() const {
  const DiskCollectionPtr accounts = job_ != nullptr ? job_->Collection(u"account") : nullptr;
  return accounts != nullptr && !accounts->IsEmpty() ? accounts->First() : nullptr;
}

DiskPtr TransferEvents::Message() const {
  const DiskCollectionPtr messages = job_ != nullptr ? job_->Collection(u"message") : nullptr;
  return messages != nullptr && !messages->IsEmpty() ? messages->First() : nullptr;
}

bool TransferEvents::IsReceiving() const {
  return pop_.Mode == kPopReceive || pop_.Mode == kPopReceiveApop;
}

void TransferEvents::Append(Disk& job, const QString& key, const QString& line) {
  const QString text = job.Text(key);
  job.Let(key, text.isEmpty() ? line : text + kLineBreak + line);
}

void TransferEvents::SessionStarted() {
  job_ = plan_.Job(pop_.Tag);
  arrivedInSession_ = 0;
  stoppedInSession_ = 0;
  stopDeletesInSession_ = 0;
  tornOffInSession_ = 0;
  storedInSession_.clear();
  toldOfUnknown_ = false;
  takesServersTime_ = Settings(context_)->Flag(u"ReceivedTime");
  deletes_ = DeletesOnServer();
  // With a file that is damaged, as the user knows, what reads here may not be read elsewhere.
  const auto damage = FindDamage(context_, MailDatabasePath(context_));
  deletesStored_ = deletes_ && damage && damage->parts.isEmpty();
  if (IsReceiving()) known_.BeginSession(deletes_);
  doomed_.clear();
  released_ = 0;
  flushFailed_ = false;
  if (IsReceiving()) {
    context_.Data.BeginGroup(MailDatabasePath(context_));
    // All the time, since what the user stores meanwhile is gathered as well.
    flushTimer_.start();
  }
  panel_.ShowStatus(pop_.Server, QStringLiteral("account"));
}

void TransferEvents::SessionEnded() {
  flushTimer_.stop();
  Flush();
  context_.Data.EndGroup();
  deleted_ += pop_.DeletedOnServer();
  // All or none: they go when the server confirms the end of the session (RFC 1939 section 6).
  if (IsReceiving() && pop_.DeletedOnServer() > 0 &&
      pop_.DeletedOnServer() == released_ + stopDeletesInSession_) {
    const Result<> noted = known_.NoteDeleted();
    if (!noted) ListingFailed(noted.Error());  // they are looked for once more
  }
  if (arrivedInSession_ > 0 && !flushFailed_) {
    Log(0, Ui::tr("メッセージを%1通受信しました。").arg(arrivedInSession_));
  }
  if (tornOffInSession_ > 0) {
    Log(0, Ui::tr("サーバーが知らせた大きさと合わないメッセージが%1通ありました。サーバーには"
                  "残します。")
               .arg(tornOffInSession_));
  }
  if (stoppedInSession_ > 0) {
    Log(0, Ui::tr("メッセージ条件により%1通を受信しませんでした。").arg(stoppedInSession_));
    if (stopDeletesInSession_ > 0) {
      Log(0, Ui::tr("そのうち%1通はサーバーから削除します。").arg(stopDeletesInSession_));
    }
  }
  panel_.ShowStatus(QString(), QString());
  job_.reset();
}

bool TransferEvents::MessageArrived(const QString& messageId, const QByteArray& data,
                                    bool isTornOff, bool& deleteOnServer) {
  deleteOnServer = false;
  if (flushFailed_) return false;
  const QString failure = Ui::tr("受信したメッセージを保存できません。サーバーには残っています。");
  QString storedAs = messageId;
  const auto found = isTornOff && known_.SaysWhatIsStored(messageId, data)
                         ? StoredCopies::Found::Stored
                         : known_.FindStored(messageId, data, isTornOff, &storedAs);
  if (!found) {
    flushFailed_ = true;
    StoreFailed(failure, found.Error());
    return false;
  }
  deleteOnServer = *found == StoredCopies::Found::None ? deletes_ : deletesStored_;
  // No filter leaves a header alone; a server that gives it has lost the rest, or the way to it.
  const bool lacksBody = isTornOff && !HasBody(data);
  if (*found != StoredCopies::Found::None) {
    ++counts_.known;
    if (isTornOff && (lacksBody || !known_.CameBefore(messageId, storedAs))) {
      KeepTornOff(messageId, storedAs, deleteOnServer);
    } else {
      NoteStored(messageId, true, deleteOnServer);
    }
    return true;
  }
  Disk message(context_.Data.NewSerialID(QStringLiteral("mail_")));
  message.Let(QStringLiteral("MessageID"), messageId);
  message.Let(QStringLiteral("Flag"), kNewFlags);
  message.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
  if (takesServersTime_) {
    const QDateTime arrival = ArrivalTime(data);
    if (arrival.isValid()) message.Let(QStringLiteral("Timestamp"), StoredTimeText(arrival));
  }
  using Received = MailStore::Received;
  Result<Received> received = store_.StoreReceived(message, data);
  // Another program has stored one of that name since it was asked for; that one may be another.
  if (received == Received::Known && known_.HasIdentifiers()) {
    const auto taken = known_.FindByContents(messageId, data, isTornOff, &storedAs);
    if (!taken) {
      received = taken.Error();
    } else if (*taken == StoredCopies::Found::None) {
      received = store_.StoreReceived(message, data);
    }
  }
  if (received == Received::Alike) {
    const Result<> noted = known_.NoteAlike(messageId, data, isTornOff, &storedAs);
    if (!noted) received = noted.Error();
  }
  if (!received) {
    deleteOnServer = false;
    flushFailed_ = true;
    StoreFailed(failure, received.Error());
    return false;
  }
  // Another account or program has received it since it was asked for.
  if (*received != Received::Stored) {
    ++counts_.known;
    deleteOnServer = deletesStored_;
    if (*received == Received::Known) {
      KeepUnlessWhole(MailDatabasePath(context_), messageId, deleteOnServer);
    }
  }
  const bool cameBefore = *received == Received::Alike && known_.CameBefore(messageId, storedAs);
  if (isTornOff && (lacksBody || !cameBefore)) {
    KeepTornOff(messageId, storedAs, deleteOnServer);
  } else {
    NoteStored(messageId, true, deleteOnServer);
  }
  if (*received != Received::Stored) return true;
  unflushed_.append({message.SerialID(), message.Text(u"MessageID")});
  group_.Add(data.size());
  return !group_.IsFull() || Flush();
}

// The rest may still be there, or another message: the next session asks again, and believes the
// same answer.
void TransferEvents::KeepTornOff(const QString& messageId, const QString& storedAs,
                                 bool& deleteOnServer) {
  deleteOnServer = false;
  known_.NoteDoubtful(messageId, storedAs);
  TornOffAgain();
}

bool TransferEvents::DeletesOnServer() const {
  const DiskPtr account = Account();
  return account != nullptr && account->Flag(u"InMailServerDelete");
}

// Whether the user still wants what he wanted when the session began.
bool TransferEvents::MayStillDelete() const {
  const DiskPtr account = Account();
  return account != nullptr && context_.Objects.Find(account->SerialID()) != nullptr &&
         DeletesOnServer();
}

void TransferEvents::NoteStored(const QString& messageId, bool proven, bool deleteOnServer) {
  known_.NoteStored(messageId, proven);
  if (deleteOnServer) doomed_.append(messageId);
}

void TransferEvents::ListingFailed(const StorageError& reason) {
  StoreFailed(Ui::tr("サーバーにあるメッセージの記録を読み書きできません。"), reason);
}

bool TransferEvents::MailboxListed(const QString& scope,
                                   const std::optional<QList<ListedMessage>>& messages) {
  if (!messages) {
    // Under other identifiers all that is stored would be received again.
    if (!known_.HadIdentifiers(scope, pop_.ServerPort)) return true;
    Error(static_cast<int>(PopError::Refused), Ui::tr("メッセージの一覧を取得できません。"));
    return false;
  }
  const Result<> taken = known_.TakeListing(scope, pop_.ServerPort, *messages);
  if (!taken) ListingFailed(taken.Error());
  return static_cast<bool>(taken);
}

bool TransferEvents::Flush() {
  group_.Clear();
  const QList<StoredMessage> stored = std::exchange(unflushed_, {});
  if (!context_.Data.FlushGroup()) {
    flushFailed_ = true;
    StoreFailed(Ui::tr("受信したメッセージを保存できません。サーバーには残っています。"),
                ReasonOf(context_.Data));
    return false;
  }
  if (!stored.isEmpty() && job_ != nullptr) {
    QStringList serials;
    for (const StoredMessage& message : stored) serials.append(message.serialId);
    Append(*job_, QStringLiteral("messages"), serials.join(kLineBreak));
  }
  if (!flushFailed_) {
    const Result<> noted = known_.Store();
    // Costs fetching these once more, if all ends here.
    if (!noted) ListingFailed(noted.Error());
  }
  if (!stored.isEmpty()) {
    if (storedInSession_.isEmpty()) storedInSession_.append(stored.first());
    storedInSession_ = {storedInSession_.first(), stored.last()};
  }
  counts_.stored += static_cast<int>(stored.size());
  arrivedInSession_ += static_cast<int>(stored.size());
  return true;
}

bool TransferEvents::MakeDurable() {
  if (!Flush() || flushFailed_) return false;
  const bool goesOn = !deletes_ || MayStillDelete();
  if (!goesOn) {
    doomed_.clear();
    stopDeletesInSession_ = 0;
  }
  // From here on their names prove nothing: the server may give them to other messages.
  released_ = static_cast<int>(doomed_.size());
  for (const QString& messageId : std::exchange(doomed_, {})) known_.Release(messageId);
  if (const Result<> noted = known_.NoteWhole(); !noted) {
    ListingFailed(noted.Error());
    return false;
  }
  if (context_.Data.HasDamage() && IsKnownDamaged(context_, MailDatabasePath(context_))) {
    StoreFailed(Ui::tr("データベースファイルが壊れているので、サーバーからは削除しません。"));
    return false;
  }
  if (!IsStillThere()) {
    StoreFailed(
        Ui::tr("メールのデータベースファイルが入れ替わったので、サーバーからは削除しません。"));
    return false;
  }
  std::ignore =
      CountWork(context_);  // behind what was received, so that a log that is lost now is missed
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  const Result<> durable =
      mail ? ResultOf(context_.Data, context_.Data.MakeDurable(MailDatabasePath(context_)))
           : mail.Error();
  if (durable && !goesOn) Log(0, Ui::tr("サーバーからの削除をやめました。"));
  if (durable) return goesOn;
  StoreFailed(Ui::tr("メッセージをディスクに書き込めません。サーバーからは削除しません。"),
              durable.Error());
  return false;
}

// Programs that copy files about may put another one in the place of that which was written to.
bool TransferEvents::IsStillThere() {
  const auto isKnown = [this](const StoredMessage& message) {
    const OpenedDatabase opened(context_, DatabaseKind::Mail);
    if (!opened) return false;
    if (MessageRows(context_.Data).Has(message.serialId)) return true;
    // The user may have erased it meanwhile, which this file notes.
    return context_.Data.OpenRecordset(
               QStringLiteral("SELECT FIELD_ID FROM erased WHERE FIELD_ID = ") +
                   QuoteSql(message.messageId),
               CursorKind::ForwardOnly) &&
           !context_.Data.Recordset()->Eof();
  };
  return std::all_of(storedInSession_.begin(), storedInSession_.end(), isKnown);
}

void TransferEvents::StoreFailed(const QString& sentence, const StorageError& reason) {
  Error(static_cast<int>(PopError::Store), sentence + reason.text);
}

bool TransferEvents::BeginHandover() {
  const DiskPtr message = Message();
  if (message == nullptr) return false;
  const auto claim =
      Outbox(context_, message->Text(u"File"))
          .BeginHandover(message->SerialID(), message->Text(u"Version"), pop_.Server);
  if (claim == Outbox::Claim::Taken) return true;
  if (claim) {
    Log(0, Ui::tr("送信を始めてから変更されたか取り消されたので、元の内容は送信しませんでした。"));
    return false;
  }
  if (claim.Error().kind == StorageError::Kind::Busy && plan_.HandOverLater(*job_)) return false;
  StoreFailed(Ui::tr("送信の記録を保存できないので、送信しませんでした。"), claim.Error());
  job_->Let(QStringLiteral("storefailed"), true);
  return false;
}

// While another program holds the file, what the server said is not forgotten.
void TransferEvents::Settle(const std::function<Result<>()>& store,
                            const std::function<void(const StorageError&)>& failed) {
  const Result<> stored = store();
  if (stored) return;
  if (stored.Error().kind == StorageError::Kind::Busy) {
    plan_.StoreLater(*job_, store, failed);
  } else {
    failed(stored.Error());
  }
}

void TransferEvents::OutcomeFailed(Disk& job, const StorageError& failure) {
  AddError(job, failure.text);
  job.Let(QStringLiteral("storefailed"), true);
}

void TransferEvents::MessageSent(const QByteArray& data) {
  const DiskPtr message = Message();
  if (message == nullptr) return;
  message->Let(QStringLiteral("process"), static_cast<int>(kStatusSent));
  Settle(
      [this, job = job_, message, data] {
        const Result<> stored = store_.StoreSent(*message, data);
        if (!stored) return stored;
        ++counts_.sent;
        Append(*job, QStringLiteral("log"), Ui::tr("メッセージを送信しました。"));
        return stored;
      },
      [this, job = job_, message](const StorageError& reason) {
        OutcomeFailed(
            *job,
            reason.Behind(Ui::tr("メッセージは送信されましたが、送信済みとして保存できません。")));
        Doubt(*job, *message, Ui::tr("（サーバーは受け取りました）"));
      });
}

void TransferEvents::HandoverEnded(HandoverOutcome outcome, const QString& reply) {
  const DiskPtr message = Message();
  if (message == nullptr) return;
  if (outcome == HandoverOutcome::Unknown) {
    Doubt(*job_, *message, reply);
    return;
  }
  Settle(
      [this, message] {
        return Outbox(context_, message->Text(u"File")).Withdraw(message->SerialID());
      },
      [this, job = job_](const StorageError& reason) {
        OutcomeFailed(*job, reason.Behind(Ui::tr("送信できなかったことを保存できません。")));
      });
}

// When even this cannot be stored, the note that it was under way remains, which comes to the same.
void TransferEvents::Doubt(Disk& job, const Disk& message, const QString& reply) {
  job.Let(QStringLiteral("doubtful"), true);
  ++counts_.doubtful;
  std::ignore = Outbox(context_, message.Text(u"File")).Doubt(message.SerialID(), reply);
}

void TransferEvents::RecipientRefused(const QString& address, const QString& reply) {
  if (job_ != nullptr) {
    Append(*job_, QStringLiteral("refused"), address + QStringLiteral(": ") + reply);
  }
}

void TransferEvents::AlreadyStored(const QString& messageId, bool& exists, bool& deleteOnServer) {
  using Name = KnownMessages::Name;
  QStringList files;
  const Result<Name> name = known_.Ask(messageId, &files);
  exists = !name || *name == Name::Stored || *name == Name::Erased;
  // A server may give an identifier anew: nothing is deleted there that is not stored here.
  deleteOnServer = deletesStored_ && name && *name != Name::Erased;
  if (!name) TellUnknown(name.Error());
  if (!exists || !name) return;
  for (const QString& file : files) KeepUnlessWhole(file, messageId, deleteOnServer);
  ++counts_.known;
  NoteStored(messageId, false, deleteOnServer);
}

// Once in a session: where one cannot be asked for, most cannot.
void TransferEvents::TellUnknown(const StorageError& reason) {
  if (std::exchange(toldOfUnknown_, true)) return;
  StoreFailed(Ui::tr("保存済みかどうかを調べられないメッセージがあるので、受信しません。"), reason);
}

bool TransferEvents::IsStored(const QString& messageId, const QByteArray& header,
                              bool& deleteOnServer) {
  deleteOnServer = deletesStored_;
  if (!known_.ProvesHeader(messageId, header)) return false;
  ++counts_.known;
  NoteStored(messageId, true, deleteOnServer);
  return true;
}

// The server's copy may be the only one that can be read.
void TransferEvents::KeepUnlessWhole(const QString& file, const QString& messageId,
                                     bool& deleteOnServer) {
  if (!deleteOnServer) return;
  const Result<> whole = StoredCopyIsWhole(context_, file, messageId);
  if (whole) return;
  deleteOnServer = false;
  StoreFailed(Ui::tr("保存済みのメッセージを読み込めないので、サーバーから削除しません。"),
              whole.Error());
}

void TransferEvents::ReceiveStopTest(const QByteArray& header, bool isTornOff, bool& stop,
                                     bool& deleteOnServer) {
  stop = Rules().FirstMatch(header).has_value();
  if (!stop) return;
  if (isTornOff) return TornOffAgain();
  deleteOnServer = LoadObject(context_, fixed_serial::kRules)->Flag(u"ReceiveStopDelete");
  ++counts_.stopped;
  ++stoppedInSession_;
  if (deleteOnServer) ++stopDeletesInSession_;
}

void TransferEvents::TakeBack(const QString& messageId) {
  doomed_.removeAll(messageId);
  known_.TakeBack(messageId);
  TornOffAgain();
}

void TransferEvents::StopTakenBack(StopDoubt why) {
  --stopDeletesInSession_;
  if (why == StopDoubt::OtherSize) return TornOffAgain();
  Log(0, Ui::tr("メッセージ条件に合うヘッダーが、もう一度受信すると異なりました。そのメッセージは"
                "サーバーに残します。"));
}

bool TransferEvents::WantsHeaders() {
  return !Rules().IsEmpty();
}

// The rules as they are now: the user may change them while a session runs.
const ReceiveStopRules& TransferEvents::Rules() {
  const DiskPtr object = LoadObject(context_, fixed_serial::kRules);
  const QString text = object != nullptr ? object->Text(u"ReceiveStop") : QString();
  if (!rules_ || text != rulesText_) {
    rulesText_ = text;
    rules_.emplace(text);
  }
  return *rules_;
}

void TransferEvents::Error(int code, const QString& text) {
  if (job_ == nullptr) {
    ++counts_.errors;
    return;
  }
  AddError(*job_, text);
  if (code == static_cast<int>(PopError::Login)) job_->Let(QStringLiteral("loginrefused"), true);
}

void TransferEvents::AddError(Disk& job, const QString& text) {
  ++counts_.errors;
  Append(job, QStringLiteral("log"), text);
  job.Let(QStringLiteral("error"), true);
}

void TransferEvents::Log(int, const QString& text) {
  if (job_ != nullptr) Append(*job_, QStringLiteral("log"), text);
}

void TransferEvents::Progress(int, qint64 total, qint64 done) {
  const bool sending = pop_.Mode == kPopSend || pop_.Mode == kPopSendOther;
  const double percent =
      total > 0 ? static_cast<double>(done) / static_cast<double>(total) * 100.0 : 0.0;
  panel_.ShowStatus(QString::number(percent, 'f', 1),
                    sending ? QStringLiteral("mailup") : QStringLiteral("maildown"));
}

}  // namespace vorn
