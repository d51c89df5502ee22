#include "transfer/server_listing.h"

#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {

// A statement over a list of values, which ends with a parenthesis.
struct ServerListing::ListStatement {
  QStringView start;
  QStringView separator;
};

namespace {

constexpr qsizetype kRowsPerStatement = 200;

// The identifiers of a scope are those from it up to this one: "/" is its last character.
QString EndOfScope(const QString& scope) {
  return scope.chopped(1) + QChar(scope.back().unicode() + 1);
}

}  // namespace

bool ServerListing::Begin(const QString& scope, const QStringList& ids) {
  Clear();
  if (!OpenDatabase(context_, DatabaseKind::Mail)) return false;
  const bool read = context_.Data.OpenRecordset(
      QStringLiteral("SELECT FIELD_ID FROM on_server WHERE FIELD_ID >= ") + QuoteSql(scope) +
          QStringLiteral(" AND FIELD_ID < ") + QuoteSql(EndOfScope(scope)),
      CursorKind::ForwardOnly);
  bool whole = false;
  if (read) {
    const RecordsetPtr rows = context_.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) present_.insert(rows->Fields(u"FIELD_ID").toString());
    whole = !rows->Failed();
  }
  context_.Data.Close();
  if (!whole) return false;

  const QSet<QString> listed(ids.begin(), ids.end());
  // The scope itself stands for a mailbox that was listed.
  if (present_.remove(scope)) {
    doubted_ = listed - present_;
    gone_ = present_ - listed;
  } else {
    added_.insert(scope);
  }
  return true;
}

void ServerListing::Clear() {
  for (QSet<QString>* ids : {&present_, &doubted_, &added_, &gone_, &released_}) ids->clear();
}

void ServerListing::Confirm(const QString& id) {
  if (!present_.contains(id)) added_.insert(id);
}

void ServerListing::Release(const QString& id) {
  added_.remove(id);
  if (present_.contains(id)) released_.insert(id);
}

bool ServerListing::Store() {
  constexpr ListStatement kForget = {u"DELETE FROM on_server WHERE FIELD_ID IN (", u","};
  if (added_.isEmpty() && gone_.isEmpty() && released_.isEmpty()) return true;
  if (!OpenDatabase(context_, DatabaseKind::Mail)) return false;
  const bool stored =
      context_.Data.Begin() && Execute(kForget, gone_) && Execute(kForget, released_) &&
      // The server has it no more, so there is nothing to keep away.
      Execute({u"DELETE FROM erased WHERE FIELD_ID IN (", u","}, gone_) &&
      Execute({u"INSERT OR IGNORE INTO on_server (FIELD_ID) VALUES (", u"),("}, added_) &&
      context_.Data.Commit();
  if (!stored) context_.Data.Rollback();
  context_.Data.Close();
  if (!stored) return false;
  present_ += added_;
  present_ -= released_;
  for (QSet<QString>* noted : {&added_, &gone_, &released_}) noted->clear();
  return true;
}

bool ServerListing::Execute(const ListStatement& statement, const QSet<QString>& ids) {
  const QStringList all(ids.begin(), ids.end());
  for (qsizetype at = 0; at < all.size(); at += kRowsPerStatement) {
    QStringList values;
    for (const QString& id : all.sliced(at, qMin(kRowsPerStatement, all.size() - at))) {
      values.append(QuoteSql(id));
    }
    if (!context_.Data.Execute(statement.start.toString() + values.join(statement.separator) +
                               u')')) {
      return false;
    }
  }
  return true;
}

}  // namespace vorn
