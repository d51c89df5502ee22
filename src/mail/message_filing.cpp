#include "mail/message_filing.h"

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

bool RunAll(Context& context, const QStringList& statements) {
  DataSession& session = context.Data;
  if (!OpenDatabase(context, DatabaseKind::Mail)) return false;
  bool done = session.Begin();
  for (const QString& statement : statements) done = done && session.Execute(statement);
  done = done && session.Commit();
  if (!done) session.Rollback();
  session.Close();
  return done;
}

}  // namespace

QString NoFolderWords() {
  return Ui::tr(
      "メッセージを入れられるフォルダがありません。条件のないフォルダを作ると、"
      "そこに入れられます。");
}

bool SetDust(Context& context, const QStringList& messages, bool dust) {
  return RunAll(context, {QStringLiteral("UPDATE mail SET STATUS = ") +
                          (dust ? QStringLiteral("-ABS(STATUS)") : QStringLiteral("ABS(STATUS)")) +
                          QStringLiteral(" WHERE") + Among(messages)});
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

bool DeleteMessages(Context& context, const QStringList& messages) {
  return RunAll(context, {QStringLiteral("DELETE FROM folder WHERE") + Among(messages),
                          QStringLiteral("DELETE * FROM mail WHERE") + Among(messages)});
}

bool EmptyDust(Context& context) {
  return RunAll(context, {QStringLiteral("DELETE FROM folder WHERE SERIALID IN "
                                         "(SELECT SERIALID FROM mail WHERE STATUS < 0)"),
                          QStringLiteral("DELETE * FROM mail WHERE STATUS < 0")});
}

}  // namespace vorn
