#include "mail/store/message_filing.h"

#include <algorithm>

#include "mail/store/mail_store.h"
#include "mail/store/message_rows.h"
#include "storage/databases.h"
#include "storage/session_result.h"
#include "storage/sql_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString Among(const QStringList& messages) {
  QStringList quoted;
  for (const QString& serialId : messages) quoted.append(QuoteSql(serialId));
  return QStringLiteral(" SERIALID IN (%1)").arg(quoted.join(u','));
}

// What a server is being given stays as it is.
const QString kMayChange =
    QStringLiteral(" AND SERIALID NOT IN (SELECT SERIALID FROM send_attempt WHERE STATE = 1)");

// Those among the messages that are being handed over.
bool ReadUnderWay(DataSession& session, const QStringList& messages, UnderWay* underWay) {
  if (!session.OpenRecordset(
          QStringLiteral(
              "SELECT SERIALID, FIELD_SUBJECT FROM mail WHERE%1 AND SERIALID IN (SELECT SERIALID "
              "FROM send_attempt WHERE STATE = 1)")
              .arg(Among(messages)),
          CursorKind::ForwardOnly)) {
    return false;
  }
  const RecordsetPtr rows = session.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) {
    underWay->insert(rows->SerialID(), rows->Fields(u"FIELD_SUBJECT").toString());
  }
  return !rows->Failed();
}

Result<> RunAll(Context& context, const QStringList& statements, const QStringList& messages = {},
                UnderWay* underWay = nullptr) {
  DataSession& session = context.Data;
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  bool done = session.Begin() && (underWay == nullptr || ReadUnderWay(session, messages, underWay));
  for (const QString& statement : statements) done = done && session.Execute(statement);
  done = done && session.Commit();
  if (!done) session.Rollback();
  return ResultOf(session, done);
}

QString Dusting(const QStringList& messages, bool dust) {
  return QStringLiteral("UPDATE mail SET STATUS = ") +
         (dust ? QStringLiteral("-ABS(STATUS)") : QStringLiteral("ABS(STATUS)")) +
         QStringLiteral(" WHERE") + Among(messages) + kMayChange;
}

QString TakingOut(const QStringList& messages, const QString& folder) {
  return QStringLiteral("DELETE FROM folder WHERE FOLDERID = ") + QuoteSql(folder) +
         QStringLiteral(" AND") + Among(messages);
}

QStringList TakingOut(const Filed& filed) {
  QStringList statements;
  for (auto folder = filed.begin(); folder != filed.end(); ++folder) {
    if (!folder->isEmpty()) statements.append(TakingOut(*folder, folder.key()));
  }
  return statements;
}

// A message is in a folder once.
QStringList Filing(const QStringList& messages, const QString& into) {
  return {TakingOut(messages, into),
          QStringLiteral("INSERT INTO folder (SERIALID, FOLDERID) SELECT SERIALID, ") +
              QuoteSql(into) + QStringLiteral(" FROM mail WHERE") + Among(messages)};
}

QStringList Filing(const Filed& filed) {
  QStringList statements;
  for (auto folder = filed.begin(); folder != filed.end(); ++folder) {
    if (!folder->isEmpty()) statements += Filing(*folder, folder.key());
  }
  return statements;
}

// The messages that a statement selects.
Result<QStringList> Find(Context& context, const QString& statement) {
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  if (!context.Data.OpenRecordset(statement, CursorKind::ForwardOnly)) {
    return ReasonOf(context.Data);
  }
  QStringList found;
  const RecordsetPtr rows = context.Data.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) found.append(rows->Fields(u"SERIALID").toString());
  if (rows->Failed()) return rows->Error();
  return found;
}

// A stored string may be shorter than where the mark stands.
QString WithMark(FlagPosition mark, const QString& value) {
  return QStringLiteral(
             "UPDATE mail SET FIELD_FLAG = SUBSTR(FIELD_FLAG & '0000000', 1, %1) & %2 & "
             "SUBSTR(FIELD_FLAG, %3) WHERE")
      .arg(mark - 1)
      .arg(value)
      .arg(mark + 1);
}

}  // namespace

QString NoFolderWords() {
  return Ui::tr(
      "メッセージを入れられるフォルダがありません。条件のないフォルダを作ると、"
      "そこに入れられます。");
}

Result<> SetDust(Context& context, const QStringList& messages, bool dust, UnderWay* underWay) {
  return RunAll(context, {Dusting(messages, dust)}, messages, underWay);
}

Result<> FileMessages(Context& context, const QStringList& messages, const QString& into,
                      const Filed& from) {
  return RunAll(context,
                TakingOut(from) + (into.isEmpty() ? QStringList() : Filing(messages, into)));
}

Result<> UnfileMessages(Context& context, const QStringList& messages, const QString& from,
                        const Filed& into) {
  return RunAll(context, TakingOut(Filed{{from, messages}}) + Filing(into));
}

Result<> PutIntoInbox(Context& context, const QStringList& messages, const Filed& filed,
                      UnderWay* underWay) {
  return RunAll(context, TakingOut(filed) << Dusting(messages, false), messages, underWay);
}

Result<> TakeOutOfInbox(Context& context, const Filed& filed, const QStringList& dust) {
  QStringList statements;
  if (!dust.isEmpty()) statements.append(Dusting(dust, true));
  return RunAll(context, statements + Filing(filed));
}

Result<QStringList> Received(Context& context, const QStringList& messages) {
  return Find(
      context,
      QStringLiteral("SELECT SERIALID FROM mail WHERE ABS(STATUS) = %1 AND").arg(kStatusReceived) +
          Among(messages));
}

Result<QStringList> Members(Context& context, const QStringList& messages, const QString& folder) {
  return Find(context, QStringLiteral("SELECT SERIALID FROM folder WHERE FOLDERID = ") +
                           QuoteSql(folder) + QStringLiteral(" AND") + Among(messages));
}

Result<> SetMark(Context& context, const QStringList& messages, FlagPosition mark, bool isSet) {
  const QString value = isSet ? QStringLiteral("'1'") : QStringLiteral("'0'");
  const QString received =
      mark == kFlagNew ? QStringLiteral(" AND ABS(STATUS) = %1").arg(kStatusReceived) : QString();
  return RunAll(context, {WithMark(mark, value) + Among(messages) + received});
}

Result<> ToggleStar(Context& context, const QStringList& messages) {
  const QString other = QStringLiteral("(1 - SUBSTR(FIELD_FLAG & '0000000', %1, 1))")
                            .arg(static_cast<int>(kFlagStar));
  return RunAll(context, {WithMark(kFlagStar, other) + Among(messages)});
}

Result<> DeleteMessages(Context& context, const QStringList& messages, UnderWay* underWay) {
  return RunAll(context,
                {QStringLiteral("DELETE FROM folder WHERE") + Among(messages) + kMayChange,
                 QStringLiteral("DELETE * FROM mail WHERE") + Among(messages) + kMayChange},
                messages, underWay);
}

int CountWaiting(Context& context, const QString& address) {
  if (address.isEmpty()) return 0;
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return 0;
  int count = 0;
  if (const RecordsetPtr rows = MessageRows(context.Data).Waiting()) {
    for (; !rows->Eof(); rows->MoveNext()) {
      const QStringList lines =
          rows->Fields(u"FIELD_MAILADDRESS").toString().split(QStringLiteral("\r\n"));
      count += std::any_of(lines.begin(), lines.end(), [&address](const QString& line) {
        return line.startsWith(u"FROM:") && line.contains(address, Qt::CaseInsensitive);
      });
    }
  }
  return count;
}

Result<> EmptyDust(Context& context) {
  return RunAll(context, {QStringLiteral("DELETE FROM folder WHERE SERIALID IN "
                                         "(SELECT SERIALID FROM mail WHERE STATUS < 0)"),
                          QStringLiteral("DELETE * FROM mail WHERE STATUS < 0")});
}

}  // namespace vorn
