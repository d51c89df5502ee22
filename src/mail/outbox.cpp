#include "mail/outbox.h"

#include "mail/mail_store.h"
#include "mail/message_rows.h"
#include "storage/databases.h"
#include "storage/sql_text.h"
#include "storage/work_lock.h"

namespace vorn {
namespace {

// What a state of a note of an attempt says; the rules of the table know the numbers too.
enum AttemptState { kUnderWay = 1, kDoubtful = 2 };

QString Where(const QString& serialId) {
  return QStringLiteral(" WHERE SERIALID = ") + QuoteSql(serialId);
}

// Every storing writes a new time.
QString Version(const Recordset& row) {
  return row.Fields(u"FIELD_TIMESTAMP").toString() + u'/' + QString::number(row.ByteCount(u"MAIL"));
}

// Whether the message waits and nothing is known of an attempt; the version of it.
enum class Waiting { Yes, No, Failed };
Waiting LookForWaiting(DataSession& data, const QString& serialId, QString* version) {
  const RecordsetPtr row = MessageRows(data).Untried(serialId);
  if (row == nullptr || row->Failed()) return Waiting::Failed;
  if (row->Eof() || row->Fields(u"STATUS").toInt() != kStatusWaiting) return Waiting::No;
  *version = Version(*row);
  return Waiting::Yes;
}

bool ReadRow(DataSession& data, const QString& serialId, WaitingMessage& message) {
  const RecordsetPtr row = MessageRows(data).Of(serialId);
  const std::optional<QString> folders = MessageRows(data).FoldersOf(serialId);
  if (row == nullptr || row->Eof() || !folders) return false;
  message.folders = *folders;
  message.source = row->Fields(u"MAIL").toByteArray();
  message.addressLines = row->Fields(u"FIELD_MAILADDRESS").toString();
  message.flags = row->Fields(u"FIELD_FLAG").toString();
  return !row->Failed() && !message.source.isEmpty();
}

}  // namespace

OpenedDatabase Outbox::Open() {
  return OpenedDatabase(context_, DatabaseKind::MailByPath, file_);
}

Outbox::Reading Outbox::Read(const QString& serialId, WaitingMessage& message) {
  const OpenedDatabase opened = Open();
  if (!opened) return Reading::Closed;
  DataSession& data = context_.Data;
  Reading reading = Reading::Unreadable;
  switch (LookForWaiting(data, serialId, &message.version)) {
    case Waiting::No:
      reading = Reading::Gone;
      break;
    case Waiting::Yes:
      if (ReadRow(data, serialId, message)) reading = Reading::Ready;
      break;
    case Waiting::Failed:
      break;
  }
  return reading;
}

Outbox::Claim Outbox::BeginHandover(const QString& serialId, const QString& version,
                                    const QString& server) {
  const OpenedDatabase opened = Open();
  if (!opened) return Claim::Failed;
  DataSession& data = context_.Data;
  Claim claim = Claim::Failed;
  if (data.Begin()) {
    QString current;
    const Waiting waiting = LookForWaiting(data, serialId, &current);
    if (waiting == Waiting::No || (waiting == Waiting::Yes && current != version)) {
      claim = Claim::Lost;
    } else if (waiting == Waiting::Yes &&
               data.Execute(QStringLiteral("INSERT INTO send_attempt (SERIALID, STATE, STARTED, "
                                           "SERVER, REPLY) VALUES(%1,%2,%3,%4,'')")
                                .arg(QuoteSql(serialId))
                                .arg(kUnderWay)
                                .arg(QuoteSql(data.Now()), QuoteSql(server))) &&
               data.Commit() && data.MakeDurable(PlatformPath(context_, file_))) {
      claim = Claim::Taken;
    }
    if (claim != Claim::Taken) data.Rollback();
  }
  return claim;
}

// Ends the attempt that fulfils the condition, and with it does what the statements say.
bool Outbox::EndAttempt(const QString& serialId, const QString& condition,
                        const QStringList& statementsAfter) {
  const OpenedDatabase opened = Open();
  if (!opened) return false;
  DataSession& data = context_.Data;
  bool done = data.Begin();
  if (done) {
    done = data.OpenRecordset(
               QStringLiteral("SELECT STATE FROM send_attempt") + Where(serialId) + condition,
               CursorKind::ForwardOnly) &&
           !data.Recordset()->Eof() &&
           data.Execute(QStringLiteral("DELETE FROM send_attempt") + Where(serialId));
    for (const QString& statement : statementsAfter) done = done && data.Execute(statement);
    done = done && data.Commit();
    if (!done) data.Rollback();
  }
  return done;
}

bool Outbox::Withdraw(const QString& serialId) {
  return EndAttempt(serialId, QString(), {});
}

bool Outbox::Doubt(const QString& serialId, const QString& reply) {
  const OpenedDatabase opened = Open();
  if (!opened) return false;
  const bool noted =
      context_.Data.Execute(QStringLiteral("UPDATE send_attempt SET STATE = %1, REPLY = %2")
                                .arg(kDoubtful)
                                .arg(QuoteSql(reply)) +
                            Where(serialId));
  return noted;
}

bool Outbox::MakeDurable() {
  const OpenedDatabase opened = Open();
  if (!opened) return false;
  const bool durable = context_.Data.MakeDurable(PlatformPath(context_, file_));
  return durable;
}

int Outbox::DoubtLeftOver() {
  const OpenedDatabase opened = Open();
  if (!opened) return 0;
  DataSession& data = context_.Data;
  int count = 0;
  if (data.OpenRecordset(
          QStringLiteral("SELECT SERIALID FROM send_attempt WHERE STATE = %1").arg(kUnderWay),
          CursorKind::ForwardOnly)) {
    for (const RecordsetPtr rows = data.Recordset(); !rows->Eof(); rows->MoveNext()) ++count;
  }
  if (count > 0 &&
      !data.Execute(QStringLiteral("UPDATE send_attempt SET STATE = %1").arg(kDoubtful))) {
    count = 0;
  }
  return count;
}

int Outbox::SettleLeftOver() {
  WorkLock work(context_, kSendingWork);
  return work.Take() ? DoubtLeftOver() : 0;
}

bool Outbox::DoubtWaiting() {
  const OpenedDatabase opened = Open();
  if (!opened) return false;
  DataSession& data = context_.Data;
  const bool noted = data.Execute(
      QStringLiteral("INSERT INTO send_attempt (SERIALID, STATE, STARTED, SERVER, REPLY) SELECT "
                     "SERIALID, %1, %2, '', '' FROM mail WHERE STATUS IN (2,-2) AND SERIALID NOT "
                     "IN (SELECT SERIALID FROM send_attempt)")
          .arg(kDoubtful)
          .arg(QuoteSql(data.Now())));
  return noted;
}

QList<DoubtfulMessage> Outbox::ReadDoubtful(const QString& condition) {
  QList<DoubtfulMessage> messages;
  const OpenedDatabase opened = Open();
  if (!opened) return messages;
  // Thrown away is decided enough. CROSS has the few attempts looked up among all messages; the
  // engine by itself reads all messages, at every page that is shown.
  if (context_.Data.OpenRecordset(
          QStringLiteral("SELECT send_attempt.SERIALID AS ID, FIELD_SUBJECT, STARTED, SERVER, "
                         "REPLY FROM send_attempt CROSS JOIN mail ON mail.SERIALID = "
                         "send_attempt.SERIALID WHERE STATE = %1 AND STATUS > 0%2 ORDER BY STARTED")
              .arg(kDoubtful)
              .arg(condition),
          CursorKind::ForwardOnly)) {
    for (const RecordsetPtr rows = context_.Data.Recordset(); !rows->Eof(); rows->MoveNext()) {
      messages.append({rows->Fields(u"ID").toString(), rows->Fields(u"FIELD_SUBJECT").toString(),
                       rows->Fields(u"STARTED").toString(), rows->Fields(u"SERVER").toString(),
                       rows->Fields(u"REPLY").toString()});
    }
  }
  return messages;
}

QList<DoubtfulMessage> Outbox::Doubtful() {
  return ReadDoubtful(QString());
}

std::optional<DoubtfulMessage> Outbox::FindDoubtful(const QString& serialId) {
  const QList<DoubtfulMessage> found =
      ReadDoubtful(QStringLiteral(" AND send_attempt.SERIALID = ") + QuoteSql(serialId));
  return found.isEmpty() ? std::nullopt : std::optional(found.first());
}

bool Outbox::SendAgain(const QString& serialId) {
  return EndAttempt(serialId, QStringLiteral(" AND STATE = %1").arg(kDoubtful), {});
}

bool Outbox::KeepAsSent(const QString& serialId) {
  return EndAttempt(serialId, QStringLiteral(" AND STATE = %1").arg(kDoubtful),
                    {QStringLiteral("UPDATE mail SET STATUS = %1").arg(kStatusSent) +
                     Where(serialId) + QStringLiteral(" AND STATUS = 2")});
}

}  // namespace vorn
