#include "transfer/doubtful_answers.h"

#include <algorithm>

#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {

void DoubtfulAnswers::Clear() {
  mailbox_.clear();
  listed_.clear();
  noted_.clear();
  changed_.clear();
  gone_.clear();
}

bool DoubtfulAnswers::Begin(const QString& mailbox, const QList<ListedMessage>& messages) {
  Clear();
  mailbox_ = mailbox;
  if (!Read()) return false;
  for (const ListedMessage& message : messages) listed_.insert(message.id, message.size);
  for (auto entry = noted_.constBegin(); entry != noted_.constEnd(); ++entry) {
    if (!listed_.contains(entry.key())) gone_.insert(entry.key());
  }
  return true;
}

bool DoubtfulAnswers::Read() {
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return false;
  bool whole = context_.Data.OpenRecordset(
      QStringLiteral("SELECT FIELD_ID, SIZE, STORED_AS FROM doubtful_answer WHERE MAILBOX = ") +
          QuoteSql(mailbox_),
      CursorKind::ForwardOnly);
  if (whole) {
    const RecordsetPtr rows = context_.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) {
      noted_.insert(rows->Fields(u"FIELD_ID").toString(),
                    {rows->Fields(u"SIZE").toLongLong(), rows->Fields(u"STORED_AS").toString()});
    }
    whole = !rows->Failed();
  }
  return whole;
}

bool DoubtfulAnswers::CameBefore(const QString& id, const QString& storedAs) const {
  const auto noted = noted_.constFind(id);
  return noted != noted_.constEnd() && noted->size == listed_.value(id, -1) &&
         noted->storedAs == storedAs;
}

void DoubtfulAnswers::Note(const QString& id, const QString& storedAs) {
  const auto listed = listed_.constFind(id);
  if (listed == listed_.constEnd()) return;
  gone_.remove(id);
  changed_.insert(id, {*listed, storedAs});
}

void DoubtfulAnswers::Forget(const QString& id) {
  changed_.remove(id);
  if (noted_.contains(id)) gone_.insert(id);
}

bool DoubtfulAnswers::Store() {
  if (changed_.isEmpty() && gone_.isEmpty()) return true;
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return false;
  const bool stored = context_.Data.Begin() && Write() && context_.Data.Commit();
  if (!stored) context_.Data.Rollback();
  if (!stored) return false;
  for (const QString& id : std::as_const(gone_)) noted_.remove(id);
  gone_.clear();
  changed_.clear();  // an answer to this session is none of an earlier one
  return true;
}

bool DoubtfulAnswers::Write() {
  const bool removed = std::all_of(gone_.begin(), gone_.end(), [this](const QString& id) {
    return context_.Data.Run("DELETE FROM doubtful_answer WHERE MAILBOX = ?1 AND FIELD_ID = ?2",
                             {mailbox_, id});
  });
  if (!removed) return false;
  return std::all_of(changed_.keyValueBegin(), changed_.keyValueEnd(), [this](const auto& entry) {
    return context_.Data.Run("INSERT OR REPLACE INTO doubtful_answer VALUES (?1, ?2, ?3, ?4)",
                             {mailbox_, entry.first, entry.second.size, entry.second.storedAs});
  });
}

}  // namespace vorn
