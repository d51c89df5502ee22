#include "transfer/server_listing.h"

#include <utility>

#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

constexpr qsizetype kRowsPerStatement = 200;
// Stands for a mailbox that was listed.
const QString kMailboxItself = QStringLiteral("");

QString WhereMailbox(const QString& mailbox) {
  return QStringLiteral(" WHERE MAILBOX = ") + QuoteSql(mailbox);
}

}  // namespace

void ServerListing::Clear() {
  mailbox_.clear();
  listed_.clear();
  noted_.clear();
  changed_.clear();
  doubted_.clear();
  proven_.clear();
  gone_.clear();
  upset_ = other_ = false;
}

bool ServerListing::Begin(const QString& mailbox, const QList<ListedMessage>& messages) {
  Clear();
  bool hasSibling = false;
  if (!Read(mailbox, &hasSibling)) return false;
  const bool isFirst = !noted_.contains(kMailboxItself);
  const bool moves = noted_.value(kMailboxItself).state == State::Moving;
  if (isFirst) changed_.insert(kMailboxItself, {});
  for (const ListedMessage& message : messages) {
    listed_.insert(message.id, message.size);
    const auto noted = noted_.constFind(message.id);
    const bool holds = isFirst ? !hasSibling
                               : !moves && noted != noted_.constEnd() &&
                                     noted->size == message.size && noted->state == State::Listed;
    if (!holds) doubted_.insert(message.id);
  }
  qsizetype missing = 0;
  bool isUnconfirmed = false;
  for (auto entry = noted_.constBegin(); entry != noted_.constEnd(); ++entry) {
    isUnconfirmed = isUnconfirmed || entry->state == State::Released;
    if (entry.key() == kMailboxItself || listed_.contains(entry.key())) continue;
    gone_.insert(entry.key());
    ++missing;
  }
  const bool lacksMost = missing > 0 && missing * 2 > noted_.size() - 1;
  other_ = moves || lacksMost;
  upset_ = other_ || isUnconfirmed;
  if (lacksMost) KeepAbsent();
  return true;
}

// What most is missing of is not forgotten, so that it is looked for as long as it is missing; what
// was to be deleted only this time.
void ServerListing::KeepAbsent() {
  for (const QString& id : std::exchange(gone_, {})) {
    const Entry& entry = noted_[id];
    if (entry.state == State::Released) {
      gone_.insert(id);
    } else if (entry.state != State::Absent) {
      changed_.insert(id, {entry.size, State::Absent});
    }
  }
}

bool ServerListing::Read(const QString& mailbox, bool* hasSibling) {
  mailbox_ = mailbox;
  if (!OpenDatabase(context_, DatabaseKind::Mail)) return false;
  // Those of other ports, of which ":" begins the end of the name.
  const QString start = mailbox.left(mailbox.lastIndexOf(u':') + 1);
  bool whole = context_.Data.OpenRecordset(
      QStringLiteral("SELECT MAILBOX FROM on_server WHERE MAILBOX >= ") + QuoteSql(start) +
          QStringLiteral(" AND MAILBOX < ") + QuoteSql(start.chopped(1) + u';') +
          QStringLiteral(" AND MAILBOX <> ") + QuoteSql(mailbox) + QStringLiteral(" LIMIT 1"),
      CursorKind::ForwardOnly);
  if (whole) {
    *hasSibling = !context_.Data.Recordset()->Eof();
    whole = context_.Data.OpenRecordset(
        QStringLiteral("SELECT FIELD_ID, SIZE, STATE FROM on_server") + WhereMailbox(mailbox),
        CursorKind::ForwardOnly);
  }
  if (whole) {
    const RecordsetPtr rows = context_.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) {
      noted_.insert(
          rows->Fields(u"FIELD_ID").toString(),
          {rows->Fields(u"SIZE").toLongLong(), static_cast<State>(rows->Fields(u"STATE").toInt())});
    }
    whole = !rows->Failed();
  }
  context_.Data.Close();
  return whole;
}

bool ServerListing::HadIdentifiers(const QString& mailbox) {
  bool hasSibling = false;
  Clear();
  const bool had = Read(mailbox, &hasSibling) && noted_.size() > 1;
  Clear();
  return had;
}

bool ServerListing::HasOtherSize(const QString& id) const {
  const auto noted = noted_.constFind(id);
  return noted != noted_.constEnd() && noted->size != listed_.value(id);
}

void ServerListing::NoteRenewed(const QString& id) {
  upset_ = upset_ || noted_.value(id).state != State::Released;
}

void ServerListing::Distrust() {
  changed_.insert(kMailboxItself, {0, State::Moving});
  for (auto message = listed_.constBegin(); message != listed_.constEnd(); ++message) {
    if (!IsProven(message.key())) doubted_.insert(message.key());
  }
  upset_ = other_ = true;
}

// Messages without identifiers are not listed, and are known by what they hold.
void ServerListing::Confirm(const QString& id) {
  const auto listed = listed_.constFind(id);
  if (listed == listed_.constEnd()) return;
  const auto noted = noted_.constFind(id);
  const bool stands =
      noted != noted_.constEnd() && noted->size == *listed && noted->state == State::Listed;
  if (!stands) changed_.insert(id, {*listed, State::Listed});
}

void ServerListing::Prove(const QString& id) {
  Confirm(id);
  doubted_.remove(id);
  if (IsListed(id)) proven_.insert(id);
}

void ServerListing::Release(const QString& id) {
  const auto listed = listed_.constFind(id);
  if (listed != listed_.constEnd()) changed_.insert(id, {*listed, State::Released});
}

void ServerListing::ForgetReleased() {
  for (auto entry = noted_.constBegin(); entry != noted_.constEnd(); ++entry) {
    if (entry->state == State::Released && listed_.contains(entry.key())) gone_.insert(entry.key());
  }
}

bool ServerListing::Store() {
  if (changed_.isEmpty() && gone_.isEmpty()) return true;
  if (!OpenDatabase(context_, DatabaseKind::Mail)) return false;
  const bool stored =
      context_.Data.Begin() && RemoveGone() && WriteChanges() && context_.Data.Commit();
  if (!stored) context_.Data.Rollback();
  context_.Data.Close();
  if (!stored) return false;
  for (const QString& id : std::as_const(gone_)) noted_.remove(id);
  for (auto entry = changed_.constBegin(); entry != changed_.constEnd(); ++entry) {
    noted_.insert(entry.key(), *entry);
  }
  changed_.clear();
  gone_.clear();
  return true;
}

bool ServerListing::RemoveGone() {
  const QStringList all(gone_.begin(), gone_.end());
  for (qsizetype at = 0; at < all.size(); at += kRowsPerStatement) {
    QStringList values;
    for (const QString& id : all.sliced(at, qMin(kRowsPerStatement, all.size() - at))) {
      values.append(QuoteSql(id));
    }
    if (!context_.Data.Execute(QStringLiteral("DELETE FROM on_server") + WhereMailbox(mailbox_) +
                               QStringLiteral(" AND FIELD_ID IN (") + values.join(u',') + u')')) {
      return false;
    }
  }
  return true;
}

bool ServerListing::WriteChanges() {
  QStringList values;
  const auto flush = [&] {
    const bool written =
        values.isEmpty() ||
        context_.Data.Execute(
            QStringLiteral(
                "INSERT OR REPLACE INTO on_server (MAILBOX, FIELD_ID, SIZE, STATE) VALUES ") +
            values.join(u','));
    values.clear();
    return written;
  };
  for (auto entry = changed_.constBegin(); entry != changed_.constEnd(); ++entry) {
    values.append(u'(' + QuoteSql(mailbox_) + u',' + QuoteSql(entry.key()) + u',' +
                  QString::number(entry->size) + u',' +
                  QString::number(static_cast<int>(entry->state)) + u')');
    if (values.size() == kRowsPerStatement && !flush()) return false;
  }
  return flush();
}

}  // namespace vorn
