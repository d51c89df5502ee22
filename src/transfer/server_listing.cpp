#include "transfer/server_listing.h"

#include <utility>

#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

constexpr qsizetype kRowsPerStatement = 200;
// A server that was told so often does not delete; unless it is known to give names anew, its
// messages are not fetched for ever.
constexpr int kMaxDeletions = 3;
// What was to be kept on the server is compared once before it is deleted there.
constexpr int kKept = -1;
// Missing in a listing that lacked most: it may come back, under this name or another one.
constexpr int kAbsent = -2;
// Stands for a mailbox that was listed, with what is known of its names in the place of deletions.
const QString kMailboxItself = QStringLiteral("");
constexpr int kReuses = 1;
constexpr int kMoves = 2;

QString WhereMailbox(const QString& mailbox) {
  return QStringLiteral(" WHERE MAILBOX = ") + QuoteSql(mailbox);
}

}  // namespace

void ServerListing::Clear() {
  mailbox_.clear();
  listed_.clear();
  noted_.clear();
  changed_.clear();
  deletions_.clear();
  doubted_.clear();
  gone_.clear();
  upset_ = reuses_ = distrusted_ = false;
}

bool ServerListing::Begin(const QString& mailbox, const QList<ListedMessage>& messages,
                          bool deletes) {
  Clear();
  deletes_ = deletes;
  bool hasSibling = false;
  if (!Read(mailbox, &hasSibling)) return false;
  for (const ListedMessage& message : messages) listed_.insert(message.id, message.size);
  const bool isFirst = !noted_.contains(kMailboxItself);
  const int names = noted_.value(kMailboxItself).deletions;
  reuses_ = names >= kReuses;
  distrusted_ = names >= kMoves;
  if (isFirst) changed_.insert(kMailboxItself, {});
  for (const ListedMessage& message : messages) {
    const auto noted = noted_.constFind(message.id);
    const bool holds = isFirst ? !deletes && !hasSibling
                               : !distrusted_ && noted != noted_.constEnd() &&
                                     noted->size == message.size &&
                                     ((noted->deletions == 0 && !(deletes && reuses_)) ||
                                      (noted->deletions >= kMaxDeletions && !reuses_) ||
                                      (noted->deletions == kKept && !deletes));
    if (!holds) doubted_.insert(message.id);
    if (noted != noted_.constEnd()) deletions_.insert(message.id, qMax(noted->deletions, 0));
  }
  qsizetype missing = 0;
  for (auto entry = noted_.constBegin(); entry != noted_.constEnd(); ++entry) {
    if (entry.key() == kMailboxItself || listed_.contains(entry.key())) continue;
    gone_.insert(entry.key());
    if (entry->deletions <= 0) ++missing;
  }
  const bool lacksMost = missing > 0 && missing * 2 > noted_.size() - 1;
  upset_ = distrusted_ || lacksMost;
  if (lacksMost) KeepAbsent();
  return true;
}

// What most is missing of is not forgotten, so that it is looked for as long as it is missing.
void ServerListing::KeepAbsent() {
  for (const QString& id : std::exchange(gone_, {})) {
    const Entry& entry = noted_[id];
    if (entry.deletions > 0) {
      gone_.insert(id);
    } else if (entry.deletions != kAbsent) {
      changed_.insert(id, {entry.size, kAbsent});
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
        QStringLiteral("SELECT FIELD_ID, SIZE, DELETIONS FROM on_server") + WhereMailbox(mailbox),
        CursorKind::ForwardOnly);
  }
  if (whole) {
    const RecordsetPtr rows = context_.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) {
      noted_.insert(rows->Fields(u"FIELD_ID").toString(),
                    {rows->Fields(u"SIZE").toLongLong(), rows->Fields(u"DELETIONS").toInt()});
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

void ServerListing::NoteReuse() {
  if (!std::exchange(reuses_, true)) changed_.insert(kMailboxItself, {0, kReuses});
}

void ServerListing::Distrust() {
  changed_.insert(kMailboxItself, {0, kMoves});
  for (auto message = listed_.constBegin(); message != listed_.constEnd(); ++message) {
    doubted_.insert(message.key());
  }
  upset_ = reuses_ = distrusted_ = true;
}

// Messages without identifiers are not listed, and are known by what they hold.
void ServerListing::Confirm(const QString& id, bool isNew) {
  if (isNew) deletions_.remove(id);  // those were of another one
  const auto listed = listed_.constFind(id);
  if (listed == listed_.constEnd()) return;
  const auto noted = noted_.constFind(id);
  const int deletions = deletes_ ? 0 : kKept;
  const bool stands =
      noted != noted_.constEnd() && noted->size == *listed && noted->deletions == deletions;
  if (!stands) changed_.insert(id, {*listed, deletions});
}

void ServerListing::Release(const QString& id) {
  const auto listed = listed_.constFind(id);
  if (listed == listed_.constEnd()) return;
  changed_.insert(id, {*listed, qMin(deletions_.value(id) + 1, kMaxDeletions)});
}

bool ServerListing::Store() {
  if (changed_.isEmpty() && gone_.isEmpty()) return true;
  if (!OpenDatabase(context_, DatabaseKind::Mail)) return false;
  const bool stored =
      context_.Data.Begin() && RemoveGone() && WriteChanges() && context_.Data.Commit();
  if (!stored) context_.Data.Rollback();
  context_.Data.Close();
  if (!stored) return false;
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
                "INSERT OR REPLACE INTO on_server (MAILBOX, FIELD_ID, SIZE, DELETIONS) VALUES ") +
            values.join(u','));
    values.clear();
    return written;
  };
  for (auto entry = changed_.constBegin(); entry != changed_.constEnd(); ++entry) {
    values.append(u'(' + QuoteSql(mailbox_) + u',' + QuoteSql(entry.key()) + u',' +
                  QString::number(entry->size) + u',' + QString::number(entry->deletions) + u')');
    if (values.size() == kRowsPerStatement && !flush()) return false;
  }
  return flush();
}

}  // namespace vorn
