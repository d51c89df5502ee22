#include "transfer/transfer_events.h"

#include <QFileInfo>
#include <utility>

#include "mail/outbox.h"
#include "mail/stored_copy.h"
#include "objects/file_age.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/known_damage.h"
#include "storage/sql_text.h"
#include "storage/ui.h"
#include "transfer/check_plan.h"
#include "transfer/pop.h"

namespace vorn {
namespace {

const QString kNewFlags = QStringLiteral("001");  // new and unopened

}  // namespace

TransferEvents::TransferEvents(Context& context, CheckPlan& plan, const Pop& pop,
                               StatusPanel& panel, QObject* parent)
    : QObject(parent),
      context_(context),
      plan_(plan),
      pop_(pop),
      panel_(panel),
      store_(context),
      listing_(context) {
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
  hasErased_.clear();
  listing_.Clear();
  scope_.clear();
  copies_.reset();
  hasUnnamed_.reset();
  if (IsReceiving()) mailFiles_ = MailFiles();
  doomed_.clear();
  deletesByName_ = false;
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
  if (arrivedInSession_ > 0 && !flushFailed_) {
    Log(0, Ui::tr("メッセージを%1通受信しました。").arg(arrivedInSession_));
  }
  if (stoppedInSession_ > 0) {
    Log(0, Ui::tr("メッセージ条件により%1通を受信しませんでした。").arg(stoppedInSession_));
  }
  panel_.ShowStatus(QString(), QString());
  job_.reset();
}

bool TransferEvents::MessageArrived(const QString& messageId, const QByteArray& data,
                                    bool& deleteOnServer) {
  deleteOnServer = false;
  if (flushFailed_) return false;
  const QString failure = Ui::tr("受信したメッセージを保存できません。サーバーには残っています。");
  const StoredCopies::Found found = FindStored(messageId, data);
  if (found == StoredCopies::Found::Failed) {
    StoreFailed(failure);
    return false;
  }
  deleteOnServer = DeletesOnServer() && found != StoredCopies::Found::Erased;
  if (found != StoredCopies::Found::None) {
    ++counts_.known;
    NoteStored(messageId, false, deleteOnServer);
    return true;
  }
  Disk message(context_.Data.NewSerialID(QStringLiteral("mail_")));
  message.Let(QStringLiteral("MessageID"), messageId);
  message.Let(QStringLiteral("Flag"), kNewFlags);
  message.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
  MailStore::Received received = store_.StoreReceived(message, data);
  // Another program has stored one of that name since it was asked for; that one may be another.
  if (received == MailStore::Received::Known && !scope_.isEmpty()) {
    const StoredCopies::Found taken = FindByContents(messageId, data);
    if (taken == StoredCopies::Found::None) received = store_.StoreReceived(message, data);
    if (taken == StoredCopies::Found::Failed) received = MailStore::Received::Failed;
  }
  if (received == MailStore::Received::Failed) {
    deleteOnServer = false;
    StoreFailed(failure);
    return false;
  }
  // Another account or program has received it since it was asked for.
  if (received == MailStore::Received::Known) {
    ++counts_.known;
    KeepUnlessWhole(MailDatabasePath(context_), messageId, deleteOnServer);
  }
  NoteStored(messageId, received == MailStore::Received::Stored, deleteOnServer);
  if (received == MailStore::Received::Known) return true;
  unflushed_.append(message.SerialID());
  group_.Add(data.size());
  return !group_.IsFull() || Flush();
}

bool TransferEvents::DeletesOnServer() const {
  const DiskPtr account = Account();
  return account != nullptr && account->Flag(u"InMailServerDelete");
}

// Those that a file of the profile may know a message by.
QStringList TransferEvents::MailFiles() const {
  const QStringList files = context_.Session->Text(u"Mail").split(kLineBreak);
  if (!Settings(context_)->Flag(u"Careful")) return files;
  // Also those that were used before, so that a new file does not begin with all that they have.
  QStringList all = files;
  for (const QString& file : context_.Session->Text(u"History").split(kLineBreak)) {
    if (!file.isEmpty() && QFileInfo(PlatformPath(context_, file)).size() > 0) all.append(file);
  }
  all.removeDuplicates();
  return all;
}

// Asked of what a name does not tell for sure: the server may have given it to another message, or
// usually gives names and gave this one none.
StoredCopies::Found TransferEvents::FindStored(const QString& messageId, const QByteArray& data) {
  const bool lacksName = !scope_.isEmpty() && !listing_.IsListed(messageId);
  return listing_.Doubts(messageId) || lacksName ? FindByContents(messageId, data)
                                                 : StoredCopies::Found::None;
}

StoredCopies::Found TransferEvents::FindByContents(const QString& messageId,
                                                   const QByteArray& data) {
  using Found = StoredCopies::Found;
  if (!copies_) copies_.emplace(context_, mailFiles_);
  QString formerName;
  const Found found = copies_->Find(
      scope_, messageId, data, listing_.IsListed(messageId),
      [this](const QString& id) { return listing_.Vouches(id); }, &formerName);
  switch (found) {
    case Found::Moved:
      // From one that is there to another; else the names of all have changed, and count from now.
      if (listing_.IsListed(formerName)) listing_.Distrust();
      return Found::Stored;
    case Found::Renewed:
      listing_.NoteReuse();
      return Found::None;
    case Found::Erased:
      return Settings(context_)->Flag(u"Careful") ? found : Found::None;
    default:
      return found;
  }
}

// Messages that had no name of their own when they were stored: what gets one now may be one of
// them.
bool TransferEvents::HasUnnamed() {
  if (hasUnnamed_) return *hasUnnamed_;
  hasUnnamed_ = false;
  const QString start = scope_ + QStringLiteral("sha256:");
  for (const QString& file : mailFiles_) {
    if (!OpenDatabase(context_, DatabaseKind::MailByPath, file)) continue;
    const bool any =
        context_.Data.OpenRecordset(QStringLiteral("SELECT FIELD_ID FROM mail WHERE FIELD_ID >= ") +
                                        QuoteSql(start) + QStringLiteral(" AND FIELD_ID < ") +
                                        QuoteSql(start + u'~') + QStringLiteral(" LIMIT 1"),
                                    CursorKind::ForwardOnly) &&
        !context_.Data.Recordset()->Eof();
    context_.Data.Close();
    hasUnnamed_ = *hasUnnamed_ || any;
  }
  return *hasUnnamed_;
}

void TransferEvents::NoteStored(const QString& messageId, bool isNew, bool deleteOnServer) {
  listing_.Confirm(messageId, isNew);
  if (deleteOnServer) doomed_.append(messageId);
}

void TransferEvents::ListingFailed() {
  StoreFailed(Ui::tr("サーバーにあるメッセージの記録を読み書きできません。"));
}

bool TransferEvents::MailboxListed(const QString& scope,
                                   const std::optional<QList<ListedMessage>>& messages) {
  // The usual port with TLS leads where the usual one without it does.
  constexpr int kPlainPort = 110;
  constexpr int kTlsPort = 995;
  const int port = pop_.ServerPort == kTlsPort ? kPlainPort : pop_.ServerPort;
  const QString mailbox = scope.chopped(1) + u':' + QString::number(port);
  if (!messages) {
    // Under other identifiers all that is stored would be received again.
    if (!listing_.HadIdentifiers(mailbox)) return true;
    Error(static_cast<int>(PopError::Refused), Ui::tr("メッセージの一覧を取得できません。"));
    return false;
  }
  scope_ = scope;
  if (listing_.Begin(mailbox, *messages, DeletesOnServer())) return true;
  ListingFailed();
  return false;
}

bool TransferEvents::Flush() {
  group_.Clear();
  const QStringList stored = std::exchange(unflushed_, {});
  if (!context_.Data.FlushGroup()) {
    flushFailed_ = true;
    StoreFailed(Ui::tr("受信したメッセージを保存できません。サーバーには残っています。"));
    return false;
  }
  if (!stored.isEmpty() && job_ != nullptr) {
    Append(*job_, QStringLiteral("messages"), stored.join(kLineBreak));
  }
  if (!flushFailed_ && !listing_.Store())
    ListingFailed();  // costs fetching these once more, if all ends here
  counts_.stored += static_cast<int>(stored.size());
  arrivedInSession_ += static_cast<int>(stored.size());
  return true;
}

bool TransferEvents::MakeDurable() {
  if (!Flush() || flushFailed_) return false;
  if (deletesByName_ && listing_.IsDistrusted()) {
    Log(0, Ui::tr("サーバーのメッセージの番号が変わっているので、今回は削除しません。"));
    return false;
  }
  // From here on their names prove nothing: the server may give them to other messages.
  for (const QString& messageId : std::exchange(doomed_, {})) listing_.Release(messageId);
  if (!listing_.Store()) {
    ListingFailed();
    return false;
  }
  if (context_.Data.HasDamage() && IsKnownDamaged(context_, MailDatabasePath(context_))) {
    StoreFailed(Ui::tr("データベースファイルが壊れているので、サーバーからは削除しません。"));
    return false;
  }
  CountWork(context_);  // behind what was received, so that a log that is lost now is missed
  if (OpenDatabase(context_, DatabaseKind::Mail)) {
    const bool durable = context_.Data.MakeDurable(MailDatabasePath(context_));
    context_.Data.Close();
    if (durable) return true;
  }
  StoreFailed(Ui::tr("メッセージをディスクに書き込めません。サーバーからは削除しません。"));
  return false;
}

void TransferEvents::StoreFailed(const QString& sentence) {
  Error(static_cast<int>(PopError::Store), sentence + context_.Data.LastError().text);
}

bool TransferEvents::BeginHandover() {
  const DiskPtr message = Message();
  if (message == nullptr) return false;
  switch (Outbox(context_, message->Text(u"File"))
              .BeginHandover(message->SerialID(), message->Text(u"Version"), pop_.Server)) {
    case Outbox::Claim::Taken:
      return true;
    case Outbox::Claim::Lost:
      Log(0, Ui::tr("送信待ちでなくなったので、送信しませんでした。"));
      return false;
    default:
      StoreFailed(Ui::tr("送信の記録を保存できないので、送信しませんでした。"));
      job_->Let(QStringLiteral("storefailed"), true);
      return false;
  }
}

// While another program holds the file, what the server said is not forgotten.
void TransferEvents::Settle(const std::function<bool()>& store,
                            const std::function<void()>& failed) {
  if (store()) return;
  if (context_.Data.LastError().kind == StorageError::Kind::Busy) {
    plan_.StoreLater(*job_, store, failed);
  } else {
    failed();
  }
}

void TransferEvents::OutcomeFailed(Disk& job, const QString& sentence) {
  AddError(job, sentence + context_.Data.LastError().text);
  job.Let(QStringLiteral("storefailed"), true);
}

void TransferEvents::MessageSent(const QByteArray& data) {
  const DiskPtr message = Message();
  if (message == nullptr) return;
  message->Let(QStringLiteral("process"), static_cast<int>(kStatusSent));
  Settle(
      [this, job = job_, message, data] {
        if (!store_.StoreSent(*message, data)) return false;
        ++counts_.sent;
        Append(*job, QStringLiteral("log"), Ui::tr("メッセージを送信しました。"));
        return true;
      },
      [this, job = job_, message] {
        OutcomeFailed(*job, Ui::tr("メッセージは送信されましたが、送信済みとして保存できません。"));
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
      [this, job = job_] {
        OutcomeFailed(*job, Ui::tr("送信できなかったことを保存できません。"));
      });
}

// When even this cannot be stored, the note that it was under way remains, which comes to the same.
void TransferEvents::Doubt(Disk& job, const Disk& message, const QString& reply) {
  job.Let(QStringLiteral("doubtful"), true);
  ++counts_.doubtful;
  Outbox(context_, message.Text(u"File")).Doubt(message.SerialID(), reply);
}

void TransferEvents::RecipientRefused(const QString& address, const QString& reply) {
  if (job_ != nullptr) {
    Append(*job_, QStringLiteral("refused"), address + QStringLiteral(": ") + reply);
  }
}

void TransferEvents::AlreadyStored(const QString& messageId, bool& exists, bool& deleteOnServer) {
  deleteOnServer = DeletesOnServer();
  bool isSure = true;
  QStringList holders;
  for (const QString& file : mailFiles_) {
    if (!OpenDatabase(context_, DatabaseKind::MailByPath, file)) continue;
    // A message in any of the files is stored, whichever is asked last.
    bool isHere = false;
    if (context_.Data.OpenRecordset(
            QStringLiteral("SELECT COUNT(0) FROM mail WHERE FIELD_ID = ") + QuoteSql(messageId),
            CursorKind::ForwardOnly)) {
      isHere = context_.Data.Recordset()->Fields(u"COUNT(0)").toInt() != 0;
    } else {
      isHere = true;  // as far as anybody can know, so that it is neither stored twice nor deleted
      isSure = false;
    }
    const bool isErased = !isHere && IsErased(file, messageId);
    context_.Data.Close();
    if (isHere) holders.append(file);
    // A server may give an identifier anew: nothing is deleted there that is not stored here.
    if (isErased) deleteOnServer = false;
    exists = exists || isHere || isErased;
  }
  if (listing_.Doubts(messageId) && isSure) {
    if (!exists && !listing_.IsUpset() && !HasUnnamed()) listing_.NoteNew(messageId);
    exists = false;  // its contents will tell
  }
  if (!exists) return;
  for (const QString& file : holders) KeepUnlessWhole(file, messageId, deleteOnServer);
  ++counts_.known;
  if (isSure) NoteStored(messageId, false, deleteOnServer);
  deletesByName_ = deletesByName_ || (deleteOnServer && listing_.IsListed(messageId));
}

// In the open file. Who has thrown a message away for good does not want it once more.
bool TransferEvents::IsErased(const QString& file, const QString& messageId) {
  const auto any = [this](const QString& condition) {
    return context_.Data.OpenRecordset(
               QStringLiteral("SELECT FIELD_ID FROM erased%1 LIMIT 1").arg(condition),
               CursorKind::ForwardOnly) &&
           !context_.Data.Recordset()->Eof();
  };
  if (!hasErased_.contains(file)) {
    hasErased_[file] = Settings(context_)->Flag(u"Careful") && any(QString());
  }
  return hasErased_[file] && any(QStringLiteral(" WHERE FIELD_ID = ") + QuoteSql(messageId));
}

// The server's copy may be the only one that can be read.
void TransferEvents::KeepUnlessWhole(const QString& file, const QString& messageId,
                                     bool& deleteOnServer) {
  if (!deleteOnServer || StoredCopyIsWhole(context_, file, messageId)) return;
  deleteOnServer = false;
  Error(static_cast<int>(PopError::Store),
        Ui::tr("保存済みのメッセージを読み込めないので、サーバーから削除しません。") +
            context_.Data.LastError().text);
}

void TransferEvents::ReceiveStopTest(const QByteArray& header, bool& stop, bool& deleteOnServer) {
  stop = Rules().FirstMatch(header).has_value();
  if (!stop) return;
  deleteOnServer = LoadObject(context_, fixed_serial::kRules)->Flag(u"ReceiveStopDelete");
  ++counts_.stopped;
  ++stoppedInSession_;
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
