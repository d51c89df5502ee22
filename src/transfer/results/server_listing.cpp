#include "transfer/results/server_listing.h"

#include <QDate>
#include <algorithm>
#include <utility>

#include "storage/databases.h"
#include "storage/session_result.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

// Stands for a mailbox that was listed.
const QString kMailboxItself = QStringLiteral("");
// Stands for all mailboxes of which one was found to be another by another name.
const QString kShared = QStringLiteral("shared");
// How long what went missing is looked for under other names.
constexpr qint64 kDaysAbsent = 60;
constexpr qint64 kFirstDay = 2461000;  // a Julian day before the first one that was noted

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
  elsewhere_.clear();
  gone_.clear();
  isFirst_ = hasSibling_ = isShared_ = upset_ = false;
}

Result<> ServerListing::Begin(const QString& mailbox, const QList<ListedMessage>& messages) {
  Clear();
  if (const Result<> read = Read(mailbox, &hasSibling_); !read) return read;
  const auto itself = noted_.constFind(kMailboxItself);
  isFirst_ = itself == noted_.constEnd();
  for (const ListedMessage& message : messages) {
    listed_.insert(message.id, message.size);
    if (!Holds(message)) doubted_.insert(message.id);
  }
  const bool hasReleased = std::any_of(noted_.constBegin(), noted_.constEnd(),
                                       [](const Entry& e) { return e.state == State::Released; });
  const bool hasAbsent = LookForMissing();
  if (isFirst_ || hasReleased || hasAbsent || itself->state != State::Listed) Upset();
  upset_ = upset_ || isShared_;
  return {};
}

// Whether the name tells what it told at the last listing.
bool ServerListing::Holds(const ListedMessage& message) const {
  const auto noted = noted_.constFind(message.id);
  return noted != noted_.constEnd() && noted->size == message.size &&
         (noted->state == State::Listed || noted->state == State::Elsewhere) &&
         noted_.value(kMailboxItself).state != State::Moving;
}

// Whether anything is missing that may come back under another name: what was to be deleted and
// perhaps was, and all where most is missing, as after a move to another server.
bool ServerListing::LookForMissing() {
  const qint64 today = QDate::currentDate().toJulianDay();
  QSet<QString> missing;
  qsizetype present = 0;
  bool hasAbsent = false;
  const auto keep = [&](const QString& id) {
    changed_.insert(id, {today, State::Absent});
    hasAbsent = true;
  };
  for (auto entry = noted_.constBegin(); entry != noted_.constEnd(); ++entry) {
    if (entry.key() == kMailboxItself) continue;
    if (listed_.contains(entry.key())) {
      ++present;
    } else if (entry->state == State::Released) {
      keep(entry.key());
    } else if (entry->state != State::Absent) {
      missing.insert(entry.key());
    } else if (entry->size > today || entry->size < kFirstDay) {
      keep(entry.key());  // of a version that noted no day
    } else if (today - entry->size > kDaysAbsent) {
      gone_.insert(entry.key());
    } else {
      hasAbsent = true;
    }
  }
  const bool lacksMost = missing.size() > present;
  for (const QString& id : std::as_const(missing)) lacksMost ? keep(id) : void(gone_.insert(id));
  return hasAbsent;
}

void ServerListing::Upset() {
  upset_ = true;
  if (noted_.value(kMailboxItself).state == State::Moving || changed_.contains(kMailboxItself)) {
    return;
  }
  changed_.insert(kMailboxItself, {0, State::Unsettled});
}

Result<> ServerListing::Read(const QString& mailbox, bool* hasSibling) {
  mailbox_ = mailbox;
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  // Those of other ports, of which ":" begins the end of the name.
  const QString start = mailbox.left(mailbox.lastIndexOf(u':') + 1);
  bool whole = context_.Data.OpenRecordset(
      QStringLiteral("SELECT MAILBOX FROM on_server WHERE MAILBOX >= ") + QuoteSql(start) +
          QStringLiteral(" AND MAILBOX < ") + QuoteSql(start.chopped(1) + u';') +
          QStringLiteral(" AND MAILBOX <> ") + QuoteSql(mailbox) + QStringLiteral(" LIMIT 1"),
      CursorKind::ForwardOnly);
  if (whole) {
    *hasSibling = !context_.Data.Recordset()->Eof();
    whole = context_.Data.OpenRecordset(QStringLiteral("SELECT MAILBOX FROM on_server") +
                                            WhereMailbox(kShared) + QStringLiteral(" LIMIT 1"),
                                        CursorKind::ForwardOnly);
  }
  if (whole) {
    isShared_ = !context_.Data.Recordset()->Eof();
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
  return ResultOf(context_.Data, whole);
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
  if (noted_.value(id).state != State::Released) Upset();
}

void ServerListing::Distrust() {
  changed_.insert(kMailboxItself, {0, State::Moving});
  for (auto message = listed_.constBegin(); message != listed_.constEnd(); ++message) {
    if (!IsProven(message.key())) doubted_.insert(message.key());
  }
  upset_ = true;
}

bool ServerListing::IsElsewhere(const QString& id) const {
  const auto noted = noted_.constFind(id);
  return noted != noted_.constEnd() && noted->state == State::Elsewhere && !Doubts(id);
}

// Messages without identifiers are not listed, and are known by what they hold.
void ServerListing::Confirm(const QString& id) {
  const auto listed = listed_.constFind(id);
  if (listed == listed_.constEnd()) return;
  const auto noted = noted_.constFind(id);
  const bool isElsewhere = elsewhere_.contains(id) || IsElsewhere(id);
  const State state = isElsewhere ? State::Elsewhere : State::Listed;
  const bool stands = noted != noted_.constEnd() && noted->size == *listed && noted->state == state;
  if (!stands) changed_.insert(id, {*listed, state});
}

void ServerListing::Prove(const QString& id) {
  Confirm(id);
  doubted_.remove(id);
  if (IsListed(id)) proven_.insert(id);
}

void ServerListing::TakeBack(const QString& id) {
  if (!IsListed(id)) return;
  changed_.remove(id);
  proven_.remove(id);
  doubted_.insert(id);
  gone_.insert(id);
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

void ServerListing::ForgetAbsent(const QString& id) {
  const auto noted = noted_.constFind(id);
  if (noted == noted_.constEnd() || listed_.contains(id)) return;
  changed_.remove(id);
  gone_.insert(id);
}

void ServerListing::Settle() {
  const auto current = [this](const QString& id) {
    const auto changed = changed_.constFind(id);
    return changed == changed_.constEnd() ? noted_.value(id, {0, State::Absent}) : *changed;
  };
  if (current(kMailboxItself).state != State::Unsettled) return;
  const bool isWhole = std::all_of(listed_.keyBegin(), listed_.keyEnd(), [&](const QString& id) {
    return current(id).state != State::Absent;
  });
  if (isWhole) changed_.insert(kMailboxItself, {0, State::Listed});
}

Result<> ServerListing::Store() {
  if (changed_.isEmpty() && gone_.isEmpty()) return {};
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  const Result<> stored = ResultOf(context_.Data, context_.Data.Begin() && RemoveGone() &&
                                                      WriteChanges() && context_.Data.Commit());
  if (!stored) context_.Data.Rollback();
  if (!stored) return stored;
  for (const QString& id : std::as_const(gone_)) noted_.remove(id);
  for (auto entry = changed_.constBegin(); entry != changed_.constEnd(); ++entry) {
    noted_.insert(entry.key(), *entry);
  }
  changed_.clear();
  gone_.clear();
  return {};
}

bool ServerListing::RemoveGone() {
  return std::all_of(gone_.begin(), gone_.end(), [this](const QString& id) {
    return context_.Data.Run("DELETE FROM on_server WHERE MAILBOX = ?1 AND FIELD_ID = ?2",
                             {mailbox_, id});
  });
}

bool ServerListing::WriteChanges() {
  const auto write = [this](const QString& mailbox, const QString& id, const Entry& entry) {
    const QVariantList values = {mailbox, id, entry.size, static_cast<int>(entry.state)};
    // Replacing in one statement makes the engine keep, and encrypt, a copy of the page each time.
    return context_.Data.Run("INSERT OR IGNORE INTO on_server VALUES (?1, ?2, ?3, ?4)", values) &&
           context_.Data.Run(
               "UPDATE on_server SET SIZE = ?3, STATE = ?4 WHERE MAILBOX = ?1 AND "
               "FIELD_ID = ?2 AND (SIZE <> ?3 OR STATE <> ?4)",
               values);
  };
  if (!elsewhere_.isEmpty() && !write(kShared, QStringLiteral(""), {})) return false;
  // In the order of the table, so that its pages are filled one after the other.
  QStringList ids = changed_.keys();
  std::sort(ids.begin(), ids.end());
  return std::all_of(ids.begin(), ids.end(),
                     [&](const QString& id) { return write(mailbox_, id, changed_.value(id)); });
}

}  // namespace vorn
