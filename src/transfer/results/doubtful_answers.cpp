#include "transfer/results/doubtful_answers.h"

#include <utility>

#include "storage/databases.h"
#include "storage/session/own_statement.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"

namespace vorn {

void DoubtfulAnswers::Clear() {
  mailbox_.clear();
  listed_.clear();
  noted_.clear();
  changed_.clear();
  gone_.clear();
}

Result<> DoubtfulAnswers::Begin(const QString& mailbox, const QList<ListedMessage>& messages) {
  Clear();
  mailbox_ = mailbox;
  if (const Result<> read = Read(); !read) return read;
  for (const ListedMessage& message : messages) listed_.insert(message.id, message.size);
  for (auto entry = noted_.constBegin(); entry != noted_.constEnd(); ++entry) {
    if (!listed_.contains(entry.key())) gone_.insert(entry.key());
  }
  return {};
}

Result<> DoubtfulAnswers::Read() {
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  if (!context_.Data.OpenRecordset(
          QStringLiteral("SELECT FIELD_ID, SIZE, STORED_AS FROM doubtful_answer WHERE MAILBOX = ") +
              QuoteSql(mailbox_),
          CursorKind::ForwardOnly)) {
    return ReasonOf(context_.Data);
  }
  const RecordsetPtr rows = context_.Data.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) {
    noted_.insert(rows->Fields(u"FIELD_ID").toString(),
                  {rows->Fields(u"SIZE").toLongLong(), rows->Fields(u"STORED_AS").toString()});
  }
  return ResultOf(context_.Data, !rows->Failed());
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

Result<> DoubtfulAnswers::Store() {
  if (changed_.isEmpty() && gone_.isEmpty()) return {};
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  const Result<> stored = Transact(context_.Data, [this] { return Write(); });
  if (!stored) return stored;
  for (const QString& id : std::as_const(gone_)) noted_.remove(id);
  gone_.clear();
  changed_.clear();  // an answer to this session is none of an earlier one
  return {};
}

Result<> DoubtfulAnswers::Write() {
  for (const QString& id : std::as_const(gone_)) {
    const Result<> removed =
        RunOwn(context_.Data, "DELETE FROM doubtful_answer WHERE MAILBOX = ?1 AND FIELD_ID = ?2",
               {mailbox_, id});
    if (!removed) return removed;
  }
  for (auto entry = changed_.constBegin(); entry != changed_.constEnd(); ++entry) {
    const Result<> written =
        RunOwn(context_.Data, "INSERT OR REPLACE INTO doubtful_answer VALUES (?1, ?2, ?3, ?4)",
               {mailbox_, entry.key(), entry->size, entry->storedAs});
    if (!written) return written;
  }
  return {};
}

}  // namespace vorn
