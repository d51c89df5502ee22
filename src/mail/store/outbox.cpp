#include "mail/store/outbox.h"

#include "mail/store/mail_row.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_rows.h"
#include "storage/databases.h"
#include "storage/session/database_sync.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"
#include "storage/work_lock.h"

namespace vorn {
namespace {

QString Where(const SerialId& serialId) {
  return QStringLiteral(" WHERE SERIALID = ") + QuoteSql(serialId);
}

// Every storing writes a new time.
QString Version(const MailRow& row) {
  return row.Timestamp() + u'/' + QString::number(row.SourceBytes());
}

// The version of a message that waits and of which no attempt is known; empty of any other.
Result<QString> WaitingVersion(DataSession& data, const SerialId& serialId) {
  const RecordsetPtr row = MessageRows(data).Untried(serialId);
  if (row == nullptr || row->Failed()) return ReasonOf(data);
  if (row->Eof()) return QString();
  const MailRow message(*row);
  if (message.State().Stored() != kStatusWaiting) return QString();
  return Version(message);
}

Result<WaitingMessage> ReadRow(DataSession& data, const SerialId& serialId) {
  const RecordsetPtr row = MessageRows(data).Of(serialId);
  if (row == nullptr || row->Eof()) return ReasonOf(data);
  const Result<SerialIds> folders = MessageRows(data).FoldersOf(serialId);
  if (!folders) return folders.Error();
  WaitingMessage message;
  message.folders = *folders;
  const MailRow stored(*row);
  message.source = stored.Source().value_or(QByteArray());
  message.addressLines = stored.AddressLines();
  message.flags = stored.Flags();
  if (row->Failed()) return row->Error();
  if (message.source.isEmpty()) return StorageError::Wordless();
  return message;
}

}  // namespace

OpenedDatabase Outbox::Open() {
  return OpenedDatabase(context_, DatabaseKind::MailByPath, file_);
}

Result<Outbox::Waiting> Outbox::Read(const SerialId& serialId) {
  const OpenedDatabase opened = Open();
  if (!opened) return Waiting{Reading::Closed};
  const Result<QString> version = WaitingVersion(context_.Data, serialId);
  if (!version) return version.Error();
  if (version->isEmpty()) return Waiting{Reading::Gone};
  Result<WaitingMessage> read = ReadRow(context_.Data, serialId);
  if (!read) return read.Error();
  read->version = *version;
  return Waiting{Reading::Ready, *std::move(read)};
}

Result<Outbox::Claim> Outbox::BeginHandover(const SerialId& serialId, const QString& version,
                                            const QString& server) {
  const OpenedDatabase opened = Open();
  if (!opened) return opened.Error();
  DataSession& data = context_.Data;
  if (!data.Begin()) return ReasonOf(data);
  const Result<QString> current = WaitingVersion(data, serialId);
  Result<Claim> claim = Claim::Lost;
  if (!current) {
    claim = current.Error();
  } else if (!current->isEmpty() && *current == version) {
    Result<> noted = ResultOf(
        data,
        data.Execute(QStringLiteral("INSERT INTO send_attempt (SERIALID, STATE, STARTED, SERVER, "
                                    "REPLY) VALUES(%1,%2,%3,%4,'')")
                         .arg(QuoteSql(serialId))
                         .arg(kAttemptUnderWay)
                         .arg(QuoteSql(data.Now()), QuoteSql(server))) &&
            data.Commit());
    if (noted) noted = SyncDatabase(data, PlatformPath(context_, file_));
    if (noted) return Claim::Taken;
    claim = noted.Error();
  }
  data.Rollback();
  return claim;
}

// Ends the attempt that fulfils the condition, and with it does what the statements say.
Result<> Outbox::EndAttempt(const SerialId& serialId, const QString& condition,
                            const QStringList& statementsAfter) {
  const OpenedDatabase opened = Open();
  if (!opened) return opened.Error();
  DataSession& data = context_.Data;
  return Transact(data, [&]() -> Result<> {
    const QString attempt = QStringLiteral("SELECT STATE FROM send_attempt");
    if (!data.OpenRecordset(attempt + Where(serialId) + condition, CursorKind::ForwardOnly)) {
      return ReasonOf(data);
    }
    if (data.Recordset()->Eof()) return StorageError{StorageError::Kind::NotFound, {}};
    bool done = data.Execute(QStringLiteral("DELETE FROM send_attempt") + Where(serialId));
    for (const QString& statement : statementsAfter) done = done && data.Execute(statement);
    return ResultOf(data, done);
  });
}

Result<> Outbox::Withdraw(const SerialId& serialId) {
  return EndAttempt(serialId, QString(), {});
}

Result<> Outbox::Doubt(const SerialId& serialId, const QString& reply) {
  const OpenedDatabase opened = Open();
  if (!opened) return opened.Error();
  const bool noted =
      context_.Data.Execute(QStringLiteral("UPDATE send_attempt SET STATE = %1, REPLY = %2")
                                .arg(kAttemptDoubtful)
                                .arg(QuoteSql(reply)) +
                            Where(serialId));
  return ResultOf(context_.Data, noted);
}

Result<> Outbox::MakeDurable() {
  const OpenedDatabase opened = Open();
  if (!opened) return opened.Error();
  return SyncDatabase(context_.Data, PlatformPath(context_, file_));
}

int Outbox::DoubtLeftOver() {
  const OpenedDatabase opened = Open();
  if (!opened) return 0;
  DataSession& data = context_.Data;
  int count = 0;
  if (data.OpenRecordset(QStringLiteral("SELECT SERIALID FROM send_attempt WHERE STATE = %1")
                             .arg(kAttemptUnderWay),
                         CursorKind::ForwardOnly)) {
    for (const RecordsetPtr rows = data.Recordset(); !rows->Eof(); rows->MoveNext()) ++count;
  }
  if (count > 0 &&
      !data.Execute(QStringLiteral("UPDATE send_attempt SET STATE = %1").arg(kAttemptDoubtful))) {
    count = 0;
  }
  return count;
}

int Outbox::SettleLeftOver() {
  WorkLock work(context_, kSendingWork);
  return work.Take() ? DoubtLeftOver() : 0;
}

Result<> Outbox::DoubtWaiting() {
  const OpenedDatabase opened = Open();
  if (!opened) return opened.Error();
  DataSession& data = context_.Data;
  const bool noted = data.Execute(
      QStringLiteral("INSERT INTO send_attempt (SERIALID, STATE, STARTED, SERVER, REPLY) SELECT "
                     "SERIALID, %1, %2, '', '' FROM mail WHERE STATUS IN (%3,-%3) AND SERIALID "
                     "NOT IN (SELECT SERIALID FROM send_attempt)")
          .arg(kAttemptDoubtful)
          .arg(QuoteSql(data.Now()))
          .arg(kStatusWaiting));
  return ResultOf(data, noted);
}

Result<QList<DoubtfulMessage>> Outbox::ReadDoubtful(const QString& condition) {
  const OpenedDatabase opened = Open();
  if (!opened) return opened.Error();
  // Thrown away is decided enough. CROSS has the few attempts looked up among all messages; the
  // engine by itself reads all messages, at every page that is shown.
  if (!context_.Data.OpenRecordset(
          QStringLiteral("SELECT send_attempt.SERIALID AS ID, FIELD_SUBJECT, STARTED, SERVER, "
                         "REPLY FROM send_attempt CROSS JOIN mail ON mail.SERIALID = "
                         "send_attempt.SERIALID WHERE STATE = %1 AND %2%3 ORDER BY STARTED")
              .arg(QString::number(kAttemptDoubtful), kOutsideDust, condition),
          CursorKind::ForwardOnly)) {
    return ReasonOf(context_.Data);
  }
  QList<DoubtfulMessage> messages;
  const RecordsetPtr rows = context_.Data.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) {
    messages.append({SerialIdOf(rows->Fields(u"ID")), MailRow(*rows).Subject(),
                     rows->Fields(u"STARTED").toString(), rows->Fields(u"SERVER").toString(),
                     rows->Fields(u"REPLY").toString()});
  }
  if (rows->Failed()) return rows->Error();
  return messages;
}

Result<QList<DoubtfulMessage>> Outbox::Doubtful() {
  return ReadDoubtful(QString());
}

Result<std::optional<DoubtfulMessage>> Outbox::FindDoubtful(const SerialId& serialId) {
  const Result<QList<DoubtfulMessage>> found =
      ReadDoubtful(QStringLiteral(" AND send_attempt.SERIALID = ") + QuoteSql(serialId));
  if (!found) return found.Error();
  return found->isEmpty() ? std::nullopt : std::optional(found->first());
}

Result<> Outbox::SendAgain(const SerialId& serialId) {
  return EndAttempt(serialId, QStringLiteral(" AND STATE = %1").arg(kAttemptDoubtful), {});
}

Result<> Outbox::KeepAsSent(const SerialId& serialId) {
  return EndAttempt(serialId, QStringLiteral(" AND STATE = %1").arg(kAttemptDoubtful),
                    {QStringLiteral("UPDATE mail SET STATUS = %1").arg(kStatusSent) +
                     Where(serialId) + QStringLiteral(" AND STATUS = %1").arg(kStatusWaiting)});
}

}  // namespace vorn
