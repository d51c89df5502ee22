#include "transfer/transfer_events.h"

#include <utility>

#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "storage/databases.h"
#include "storage/sql_text.h"
#include "storage/ui.h"
#include "transfer/check_plan.h"
#include "transfer/pop.h"

namespace vorn {
namespace {

// A group is written when it is this old or this large.
constexpr int kGroupMs = 200;
constexpr qsizetype kGroupMessages = 100;
constexpr qint64 kGroupBytes = 2 * 1024 * 1024;

const QString kNewFlags = QStringLiteral("001");  // new and unopened

}  // namespace

TransferEvents::TransferEvents(Context& context, CheckPlan& plan, const Pop& pop,
                               StatusPanel& panel, QObject* parent)
    : QObject(parent), context_(context), plan_(plan), pop_(pop), panel_(panel), store_(context) {
  flushTimer_.setInterval(kGroupMs);
  connect(&flushTimer_, &QTimer::timeout, this, &TransferEvents::Flush);
}

DiskPtr TransferEvents::Job() const {
  return plan_.Job(pop_.Tag);
}

DiskPtr TransferEvents::Account() const {
  const DiskPtr job = Job();
  const DiskCollectionPtr accounts = job != nullptr ? job->Collection(u"account") : nullptr;
  return accounts != nullptr && !accounts->IsEmpty() ? accounts->First() : nullptr;
}

void TransferEvents::Append(const QString& key, const QString& line) {
  const DiskPtr job = Job();
  if (job == nullptr) return;
  const QString text = job->Text(key);
  job->Let(key, text.isEmpty() ? line : text + kLineBreak + line);
}

void TransferEvents::SessionStarted() {
  arrivedInSession_ = 0;
  stoppedInSession_ = 0;
  flushFailed_ = false;
  context_.Data.BeginGroup(MailDatabasePath(context_));
  // All the time, since what the user stores meanwhile is gathered as well.
  flushTimer_.start();
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
}

bool TransferEvents::MessageArrived(const QString& messageId, const QByteArray& data,
                                    bool& deleteOnServer) {
  deleteOnServer = false;
  if (flushFailed_) return false;
  Disk message(context_.Data.NewSerialID(QStringLiteral("mail_")));
  message.Let(QStringLiteral("MessageID"), messageId);
  message.Let(QStringLiteral("Flag"), kNewFlags);
  message.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
  const QString stored = store_.StoreMessage(message, data);
  if (stored.isEmpty()) {
    Error(static_cast<int>(PopError::Store),
          Ui::tr("受信したメッセージを保存できません。サーバーには残っています。") +
              context_.Data.LastError().text);
    return false;
  }
  const DiskPtr account = Account();
  deleteOnServer = account != nullptr && account->Flag(u"InMailServerDelete");
  unflushed_.append(stored);
  unflushedBytes_ += data.size();
  return (unflushed_.size() < kGroupMessages && unflushedBytes_ < kGroupBytes) || Flush();
}

bool TransferEvents::Flush() {
  unflushedBytes_ = 0;
  const QStringList stored = std::exchange(unflushed_, {});
  if (!context_.Data.FlushGroup()) {
    flushFailed_ = true;
    Error(static_cast<int>(PopError::Store),
          Ui::tr("受信したメッセージを保存できません。サーバーには残っています。") +
              context_.Data.LastError().text);
    return false;
  }
  if (!stored.isEmpty()) Append(QStringLiteral("messages"), stored.join(kLineBreak));
  counts_.stored += static_cast<int>(stored.size());
  arrivedInSession_ += static_cast<int>(stored.size());
  return true;
}

bool TransferEvents::MakeDurable() {
  if (!Flush() || flushFailed_) return false;
  if (OpenDatabase(context_, DatabaseKind::Mail)) {
    const bool durable = context_.Data.MakeDurable(MailDatabasePath(context_));
    context_.Data.Close();
    if (durable) return true;
  }
  Error(static_cast<int>(PopError::Store),
        Ui::tr("メッセージをディスクに書き込めません。サーバーからは削除しません。") +
            context_.Data.LastError().text);
  return false;
}

void TransferEvents::MessageSent(const QByteArray& data) {
  const DiskPtr job = Job();
  const DiskCollectionPtr messages = job != nullptr ? job->Collection(u"message") : nullptr;
  if (messages == nullptr || messages->IsEmpty()) return;
  const DiskPtr message = messages->First();
  message->Let(QStringLiteral("process"), static_cast<int>(kStatusSent));
  // Durable at once: a message that was sent and forgotten would be sent again.
  if (store_.StoreMessage(*message, data).isEmpty() || !MakeDurable()) {
    Error(static_cast<int>(PopError::Store),
          Ui::tr("メッセージは送信されましたが、送信済みとして保存できません。") +
              context_.Data.LastError().text);
    return;
  }
  ++counts_.sent;
  Log(0, Ui::tr("メッセージを送信しました。"));
}

void TransferEvents::AlreadyStored(const QString& messageId, bool& exists, bool& deleteOnServer) {
  const DiskPtr account = Account();
  deleteOnServer = account != nullptr && account->Flag(u"InMailServerDelete");
  for (const QString& file : context_.Session->Text(u"Mail").split(kLineBreak)) {
    if (!OpenDatabase(context_, DatabaseKind::MailByPath, file)) continue;
    if (context_.Data.OpenRecordset(
            QStringLiteral("SELECT COUNT(0) FROM mail WHERE FIELD_ID = ") + QuoteSql(messageId),
            CursorKind::ForwardOnly)) {
      // A message in any of the files is stored, whichever is asked last.
      const RecordsetPtr count = context_.Data.Recordset();
      exists = exists || count->Fields(u"COUNT(0)").toInt() != 0;
    }
    context_.Data.Close();
  }
  if (exists) ++counts_.known;
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

void TransferEvents::Error(int, const QString& text) {
  ++counts_.errors;
  Append(QStringLiteral("log"), text);
  if (const DiskPtr job = Job()) job->Let(QStringLiteral("error"), true);
}

void TransferEvents::Log(int, const QString& text) {
  Append(QStringLiteral("log"), text);
}

void TransferEvents::Progress(int, qint64 total, qint64 done) {
  const bool sending = pop_.Mode == kPopSend || pop_.Mode == kPopSendOther;
  const double percent =
      total > 0 ? static_cast<double>(done) / static_cast<double>(total) * 100.0 : 0.0;
  panel_.ShowStatus(QString::number(percent, 'f', 1),
                    sending ? QStringLiteral("mailup") : QStringLiteral("maildown"));
}

}  // namespace vorn
