#include "mail/message_filing.h"

#include <algorithm>

#include "mail/message_rows.h"
#include "storage/databases.h"
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

// The subjects of those among the messages that are being handed over.
bool ReadUnderWay(DataSession& session, const QStringList& messages, QStringList* underWay) {
  if (!session.OpenRecordset(
          QStringLiteral("SELECT FIELD_SUBJECT FROM mail WHERE%1 AND SERIALID IN (SELECT SERIALID "
                         "FROM send_attempt WHERE STATE = 1)")
              .arg(Among(messages)),
          CursorKind::ForwardOnly)) {
    return false;
  }
  const RecordsetPtr rows = session.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) {
    underWay->append(rows->Fields(u"FIELD_SUBJECT").toString());
  }
  return !rows->Failed();
}

bool RunAll(Context& context, const QStringList& statements, const QStringList& messages = {},
            QStringList* underWay = nullptr) {
  DataSession& session = context.Data;
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return false;
  bool done = session.Begin() && (underWay == nullptr || ReadUnderWay(session, messages, underWay));
  for (const QString& statement : statements) done = done && session.Execute(statement);
  done = done && session.Commit();
  if (!done) session.Rollback();
  return done;
}

}  // namespace

QString NoFolderWords() {
  return Ui::tr(
      "メッセージを入れられるフォルダがありません。条件のないフォルダを作ると、"
      "そこに入れられます。");
}

bool SetDust(Context& context, const QStringList& messages, bool dust, QStringList* underWay) {
  return RunAll(context,
                {QStringLiteral("UPDATE mail SET STATUS = ") +
                 (dust ? QStringLiteral("-ABS(STATUS)") : QStringLiteral("ABS(STATUS)")) +
                 QStringLiteral(" WHERE") + Among(messages) + kMayChange},
                messages, underWay);
}

bool FileMessages(Context& context, const QStringList& messages, const QString& into,
                  const QString& from) {
  QStringList statements;
  for (const QString& folder : {from, into}) {
    if (folder.isEmpty()) continue;
    statements.append(QStringLiteral("DELETE FROM folder WHERE FOLDERID = ") + QuoteSql(folder) +
                      QStringLiteral(" AND") + Among(messages));
  }
  if (!into.isEmpty()) {
    statements.append(QStringLiteral("INSERT INTO folder (SERIALID, FOLDERID) SELECT SERIALID, ") +
                      QuoteSql(into) + QStringLiteral(" FROM mail WHERE") + Among(messages));
  }
  return RunAll(context, statements);
}

bool DeleteMessages(Context& context, const QStringList& messages, QStringList* underWay) {
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

bool EmptyDust(Context& context) {
  return RunAll(context, {QStringLiteral("DELETE FROM folder WHERE SERIALID IN "
                                         "(SELECT SERIALID FROM mail WHERE STATUS < 0)"),
                          QStringLiteral("DELETE * FROM mail WHERE STATUS < 0")});
}

}  // namespace vorn
