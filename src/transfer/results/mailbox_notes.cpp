#include "transfer/results/mailbox_notes.h"

#include <QDate>
#include <algorithm>
#include <utility>

#include "storage/databases.h"
#include "storage/session/own_statement.h"
#include "storage/session/session_result.h"

namespace vorn {
namespace {

// Stands for all mailboxes of which one was found to be another by another name.
const QString kShared = QStringLiteral("shared");
// How long what went missing is looked for under other names.
constexpr qint64 kDaysAbsent = 60;
constexpr qint64 kFirstDay = 2461000;  // a Julian day before the first one that was noted

}  // namespace

void MailboxNotes::Clear() {
  mailbox_.clear();
  noted_.clear();
  changed_.clear();
  gone_.clear();
  hasSibling_ = isShared_ = sharesNow_ = false;
}

Result<> MailboxNotes::Read(const QString& mailbox) {
  Clear();
  mailbox_ = mailbox;
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  // Those of other ports, of which ":" begins the end of the name.
  const QString start = mailbox.left(mailbox.lastIndexOf(u':') + 1);
  const Result<RecordsetPtr> sibling =
      AskOwn(context_.Data,
             "SELECT MAILBOX FROM on_server WHERE MAILBOX >= ?1 AND MAILBOX < ?2 AND MAILBOX <> ?3 "
             "LIMIT 1",
             {start, start.chopped(1) + u';', mailbox});
  if (!sibling) return sibling.Error();
  hasSibling_ = !(*sibling)->Eof();
  const Result<RecordsetPtr> shared =
      AskOwn(context_.Data, "SELECT MAILBOX FROM on_server WHERE MAILBOX = ?1 LIMIT 1", {kShared});
  if (!shared) return shared.Error();
  isShared_ = !(*shared)->Eof();
  const Result<RecordsetPtr> rows = AskOwn(
      context_.Data, "SELECT FIELD_ID, SIZE, STATE FROM on_server WHERE MAILBOX = ?1", {mailbox});
  if (!rows) return rows.Error();
  for (Recordset& row = **rows; !row.Eof(); row.MoveNext()) {
    noted_.insert(
        row.Fields(u"FIELD_ID").toString(),
        {row.Fields(u"SIZE").toLongLong(), static_cast<State>(row.Fields(u"STATE").toInt())});
  }
  if ((*rows)->Failed()) return (*rows)->Error();
  return {};
}

bool MailboxNotes::HasReleased() const {
  return std::any_of(noted_.constBegin(), noted_.constEnd(),
                     [](const Entry& entry) { return entry.state == State::Released; });
}

bool MailboxNotes::Holds(const ListedMessage& message) const {
  const auto noted = noted_.constFind(message.id);
  return noted != noted_.constEnd() && noted->size == message.size &&
         (noted->state == State::Listed || noted->state == State::Elsewhere) &&
         Of(kItself).state != State::Moving;
}

MailboxNotes::Entry MailboxNotes::Current(const QString& id) const {
  const auto changed = changed_.constFind(id);
  return changed == changed_.constEnd() ? noted_.value(id, {0, State::Absent}) : *changed;
}

void MailboxNotes::Forget(const QString& id) {
  changed_.remove(id);
  gone_.insert(id);
}

void MailboxNotes::ForgetReleased(const QHash<QString, qint64>& listed) {
  for (auto entry = noted_.constBegin(); entry != noted_.constEnd(); ++entry) {
    if (entry->state == State::Released && listed.contains(entry.key())) gone_.insert(entry.key());
  }
}

bool MailboxNotes::NoteMissing(const QHash<QString, qint64>& listed) {
  const qint64 today = QDate::currentDate().toJulianDay();
  QSet<QString> missing;
  qsizetype present = 0;
  bool hasAbsent = false;
  const auto keep = [&](const QString& id) {
    changed_.insert(id, {today, State::Absent});
    hasAbsent = true;
  };
  for (auto entry = noted_.constBegin(); entry != noted_.constEnd(); ++entry) {
    if (entry.key() == kItself) continue;
    if (listed.contains(entry.key())) {
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

Result<> MailboxNotes::Store() {
  if (changed_.isEmpty() && gone_.isEmpty()) return {};
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  const Result<> stored = Transact(context_.Data, [this] { return WriteAll(); });
  if (!stored) return stored;
  for (const QString& id : std::as_const(gone_)) noted_.remove(id);
  for (auto entry = changed_.constBegin(); entry != changed_.constEnd(); ++entry) {
    noted_.insert(entry.key(), *entry);
  }
  changed_.clear();
  gone_.clear();
  return {};
}

Result<> MailboxNotes::Write(const QString& mailbox, const QString& id, const Entry& entry) {
  const QVariantList values = {mailbox, id, entry.size, static_cast<int>(entry.state)};
  // Replacing in one statement makes the engine keep, and encrypt, a copy of the page each time.
  const Result<> added =
      RunOwn(context_.Data, "INSERT OR IGNORE INTO on_server VALUES (?1, ?2, ?3, ?4)", values);
  if (!added) return added;
  return RunOwn(context_.Data,
                "UPDATE on_server SET SIZE = ?3, STATE = ?4 WHERE MAILBOX = ?1 AND "
                "FIELD_ID = ?2 AND (SIZE <> ?3 OR STATE <> ?4)",
                values);
}

Result<> MailboxNotes::WriteAll() {
  Result<> written;
  for (const QString& id : std::as_const(gone_)) {
    written = RunOwn(context_.Data, "DELETE FROM on_server WHERE MAILBOX = ?1 AND FIELD_ID = ?2",
                     {mailbox_, id});
    if (!written) return written;
  }
  if (sharesNow_) written = Write(kShared, kItself, {});
  // In the order of the table, so that its pages are filled one after the other.
  QStringList ids = changed_.keys();
  std::sort(ids.begin(), ids.end());
  for (const QString& id : std::as_const(ids)) {
    if (written) written = Write(mailbox_, id, changed_.value(id));
  }
  return written;
}

}  // namespace vorn
