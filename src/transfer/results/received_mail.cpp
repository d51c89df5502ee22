#include "transfer/results/received_mail.h"

#include <tuple>
#include <utility>

#include "mail/codec/mime/message_date.h"
#include "mail/store/message_bag.h"
#include "mail/store/message_identity.h"
#include "mail/store/stored_copy.h"
#include "objects/profile/file_age.h"
#include "objects/settings.h"
#include "storage/base/time_text.h"
#include "storage/databases.h"
#include "storage/known_damage.h"
#include "storage/session/database_sync.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"
#include "transfer/control/pop.h"
#include "transfer/results/transfer_log.h"

namespace vorn {
namespace {

const FlagString kNewFlags(QStringLiteral("001"));  // new and unopened
const QDate kFirstMail(1982, 8, 13);                // of RFC 822
constexpr qint64 kClockOffS = 600;

// When the user's own server took the message in, which noted it above all others. Invalid where
// that cannot be right.
QDateTime ArrivalTime(const QByteArray& source) {
  const QDateTime time = ReceivedDate(source);
  const bool isPast = time < QDateTime::currentDateTimeUtc().addSecs(kClockOffS);
  return isPast && time.date() >= kFirstMail ? time : QDateTime();
}

}  // namespace

ReceivedMail::ReceivedMail(Context& context, const Pop& pop, TransferLog& log)
    : context_(context),
      pop_(pop),
      log_(log),
      store_(context),
      known_(context),
      groups_(context, known_, log),
      deletions_(context, log),
      rules_(context),
      toldStops_(context) {}

void ReceivedMail::Begin() {
  stopped_ = 0;
  tornOff_ = 0;
  toldOfUnknown_ = false;
  takesServersTime_ = Settings(context_).TakesServersTime();
  toldStops_.Begin();
  deletions_.Begin();
  if (IsReceiving()) known_.BeginSession(deletions_.OfNew());
  groups_.Begin(IsReceiving());
}

void ReceivedMail::End() {
  groups_.End();
  // All or none: they go when the server confirms the end of the session (RFC 1939 section 6).
  if (IsReceiving() && pop_.DeletedOnServer() > 0 &&
      pop_.DeletedOnServer() == deletions_.CountReleased()) {
    const Result<> noted = known_.NoteDeleted();
    if (!noted) log_.ListingFailed(noted.Error());  // they are looked for once more
  }
  if (groups_.Written() > 0 && !groups_.HasFailed()) {
    log_.Add(Ui::tr("メッセージを%n通受信しました。", nullptr, groups_.Written()));
  }
  if (tornOff_ > 0) {
    log_.Add(
        Ui::tr("サーバーが知らせた大きさと合わないメッセージが%n通ありました。サーバーには"
               "残します。",
               nullptr, tornOff_));
  }
  if (stopped_ > 0) {
    log_.Add(Ui::tr("メッセージ条件により%n通を受信しませんでした。", nullptr, stopped_));
    if (deletions_.Stopped() > 0) {
      log_.Add(Ui::tr("そのうち%n通はサーバーから削除します。", nullptr, deletions_.Stopped()));
    }
    std::ignore = toldStops_.Store();  // else they are told of once more
  }
}

bool ReceivedMail::IsReceiving() const {
  return pop_.Mode == kPopReceive || pop_.Mode == kPopReceiveApop;
}

std::optional<ServerCopy> ReceivedMail::MessageArrived(const QString& messageId,
                                                       const QByteArray& data, bool isTornOff) {
  using Received = MailStore::Received;
  if (groups_.HasFailed()) return {};
  const auto known = isTornOff && known_.SaysWhatIsStored(messageId, data)
                         ? StoredCopies::Copy{StoredCopies::Found::Stored, messageId}
                         : known_.FindStored(messageId, data, isTornOff);
  if (!known) return GiveUp(known.Error());
  // No filter leaves a header alone; a server that gives it has lost the rest, or the way to it.
  const bool lacksBody = isTornOff && !HasBody(data);
  if (known->found != StoredCopies::Found::None) {
    ++log_.Counts().known;
    if (isTornOff && (lacksBody || !known_.CameBefore(messageId, known->storedAs))) {
      return KeepTornOff(messageId, known->storedAs);
    }
    return NoteStored(messageId, true, DeletedIf(deletions_.OfStored()));
  }
  Disk message(context_.Data.NewSerialID(QStringLiteral("mail_")));
  Describe(message, messageId, data);
  const Result<Stored> stored = Store(message, messageId, data, isTornOff);
  if (!stored) return GiveUp(stored.Error());
  const auto& [received, storedAs] = *stored;
  ServerCopy copy = DeletedIf(deletions_.OfNew());
  // Another account or program has received it since it was asked for.
  if (received != Received::Stored) {
    ++log_.Counts().known;
    copy = DeletedIf(deletions_.OfStored());
    if (received == Received::Known) {
      copy = KeepUnlessWhole(MailDatabasePath(context_), messageId, copy);
    }
  }
  const bool cameBefore = received == Received::Alike && known_.CameBefore(messageId, storedAs);
  const bool isKept = isTornOff && (lacksBody || !cameBefore);
  copy = isKept ? KeepTornOff(messageId, storedAs) : NoteStored(messageId, true, copy);
  if (received == Received::Stored && !groups_.Add(message.Serial(), messageId, data.size())) {
    return {};
  }
  return copy;
}

// As it is stored when it comes.
void ReceivedMail::Describe(Disk& message, const QString& messageId, const QByteArray& data) const {
  MessageBag::SetMessageId(message, messageId);
  MessageBag::SetFlags(message, kNewFlags);
  MessageBag::SetStatus(message, kStatusReceived);
  if (takesServersTime_) {
    const QDateTime arrival = ArrivalTime(data);
    if (arrival.isValid()) MessageBag::SetTimestamp(message, StoredTimeText(arrival));
  }
}

// As a message that nobody knew of a moment ago.
Result<ReceivedMail::Stored> ReceivedMail::Store(Disk& message, const QString& messageId,
                                                 const QByteArray& data, bool isTornOff) {
  using Received = MailStore::Received;
  QString storedAs = messageId;
  Result<Received> received = store_.StoreReceived(message, data);
  // Another program has stored one of that name since it was asked for; that one may be another.
  if (received == Received::Known && known_.HasIdentifiers()) {
    const auto taken = known_.FindByContents(messageId, data, isTornOff);
    if (!taken) return taken.Error();
    storedAs = taken->storedAs;
    if (taken->found == StoredCopies::Found::None) received = store_.StoreReceived(message, data);
  }
  if (received == Received::Alike) {
    const Result<QString> noted = known_.NoteAlike(messageId, data, isTornOff);
    if (!noted) return noted.Error();
    storedAs = *noted;
  }
  if (!received) return received.Error();
  return Stored{*received, storedAs};
}

std::nullopt_t ReceivedMail::GiveUp(const StorageError& reason) {
  groups_.Fail(reason);
  return std::nullopt;
}

// The rest may still be there, or another message: the next session asks again, and believes the
// same answer.
ServerCopy ReceivedMail::KeepTornOff(const QString& messageId, const QString& storedAs) {
  known_.NoteDoubtful(messageId, storedAs);
  TornOffAgain();
  return ServerCopy::Stays;
}

ServerCopy ReceivedMail::NoteStored(const QString& messageId, bool proven, ServerCopy copy) {
  known_.NoteStored(messageId, proven);
  if (copy == ServerCopy::Deleted) deletions_.Add(messageId);
  return copy;
}

bool ReceivedMail::MailboxListed(const QString& scope,
                                 const std::optional<QList<ListedMessage>>& messages) {
  if (!messages) {
    // Under other identifiers all that is stored would be received again.
    if (!known_.HadIdentifiers(scope, pop_.ServerPort)) return true;
    log_.AddError(PopError::Refused, Ui::tr("メッセージの一覧を取得できません。"));
    return false;
  }
  const Result<> taken = known_.TakeListing(scope, pop_.ServerPort, *messages);
  if (!taken) log_.ListingFailed(taken.Error());
  return static_cast<bool>(taken);
}

std::optional<ServerCopy> ReceivedMail::AlreadyStored(const QString& messageId) {
  using Name = KnownMessages::Name;
  const auto known = known_.Ask(messageId);
  if (!known) {
    TellUnknown(known.Error());
    return ServerCopy::Stays;
  }
  if (known->name != Name::Stored && known->name != Name::Erased) return {};
  // A server may give an identifier anew: nothing is deleted there that is not stored here.
  ServerCopy copy = DeletedIf(deletions_.OfStored() && known->name != Name::Erased);
  for (const QString& file : known->files) copy = KeepUnlessWhole(file, messageId, copy);
  ++log_.Counts().known;
  return NoteStored(messageId, false, copy);
}

// Once in a session: where one cannot be asked for, most cannot.
void ReceivedMail::TellUnknown(const StorageError& reason) {
  if (std::exchange(toldOfUnknown_, true)) return;
  log_.StoreFailed(Ui::tr("保存済みかどうかを調べられないメッセージがあるので、受信しません。"),
                   reason);
}

std::optional<ServerCopy> ReceivedMail::StoredByHeader(const QString& messageId,
                                                       const QByteArray& header) {
  if (!known_.ProvesHeader(messageId, header)) return {};
  ++log_.Counts().known;
  return NoteStored(messageId, true, DeletedIf(deletions_.OfStored()));
}

// The server's copy may be the only one that can be read.
ServerCopy ReceivedMail::KeepUnlessWhole(const QString& file, const QString& messageId,
                                         ServerCopy copy) {
  if (copy == ServerCopy::Stays) return copy;
  const Result<> whole = StoredCopyIsWhole(context_, file, messageId);
  if (whole) return copy;
  log_.StoreFailed(Ui::tr("保存済みのメッセージを読み込めないので、サーバーから削除しません。"),
                   whole.Error());
  return ServerCopy::Stays;
}

std::optional<ServerCopy> ReceivedMail::ReceiveStopTest(const QByteArray& header, bool isTornOff) {
  if (!rules_.Get().FirstMatch(header)) return {};
  if (isTornOff) {
    TornOffAgain();
    return ServerCopy::Stays;
  }
  const ServerCopy copy = DeletedIf(rules_.DeleteOnServer());
  ++log_.Counts().stopped;
  if (copy == ServerCopy::Deleted) {
    deletions_.AddStopped();
    ++stopped_;
  } else if (toldStops_.IsFresh(header)) {
    ++stopped_;
  }
  return copy;
}

void ReceivedMail::TakeBack(const QString& messageId) {
  deletions_.Spare(messageId);
  known_.TakeBack(messageId);
  TornOffAgain();
}

void ReceivedMail::StopTakenBack(StopDoubt why) {
  deletions_.SpareStopped();
  if (why == StopDoubt::OtherSize) return TornOffAgain();
  log_.Add(
      Ui::tr("メッセージ条件に合うヘッダーが、もう一度受信すると異なりました。そのメッセージは"
             "サーバーに残します。"));
}

bool ReceivedMail::MakeDurable() {
  if (!groups_.Flush() || groups_.HasFailed()) return false;
  const bool goesOn = deletions_.GoesOn();
  // From here on their names prove nothing: the server may give them to other messages.
  for (const QString& messageId : deletions_.Release()) known_.Release(messageId);
  if (const Result<> noted = known_.NoteWhole(); !noted) {
    log_.ListingFailed(noted.Error());
    return false;
  }
  if (!context_.Data.Damage().IsEmpty() && IsKnownDamaged(context_, MailDatabasePath(context_))) {
    log_.StoreFailed(Ui::tr("データベースファイルが壊れているので、サーバーからは削除しません。"));
    return false;
  }
  if (!groups_.AreStillThere()) {
    log_.StoreFailed(
        Ui::tr("メールのデータベースファイルが入れ替わったので、サーバーからは削除しません。"));
    return false;
  }
  std::ignore =
      CountWork(context_);  // behind what was received, so that a log that is lost now is missed
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  const Result<> durable =
      mail ? SyncDatabase(context_.Data, MailDatabasePath(context_)) : mail.Error();
  if (durable && !goesOn) log_.Add(Ui::tr("サーバーからの削除をやめました。"));
  if (durable) return goesOn;
  log_.StoreFailed(Ui::tr("メッセージをディスクに書き込めません。サーバーからは削除しません。"),
                   durable.Error());
  return false;
}

}  // namespace vorn
