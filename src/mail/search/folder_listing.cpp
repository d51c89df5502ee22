#include "mail/search/folder_listing.h"

#include <QHash>
#include <algorithm>
#include <optional>

#include "mail/search/search_condition.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_pieces.h"
#include "storage/databases.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"

namespace vorn {
namespace {

const QString kOldestFirst = QStringLiteral(" ORDER BY FIELD_TIMESTAMP ASC");

FolderMessage Read(const MailRow& row) {
  return {row.Serial(), row.Subject(), row.Timestamp(), !row.Flags().IsUnopened(),
          row.Status() == kStatusReceived};
}

// Lists what a statement finds. False when it could not be read to its end.
bool List(DataSession& data, const QString& select, std::vector<FolderMessage>& messages) {
  if (!data.OpenRecordset(select, CursorKind::ForwardOnly, StatementTrust::UserCondition)) {
    return false;
  }
  const RecordsetPtr rows = data.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) messages.push_back(Read(MailRow(*rows)));
  return !rows->Failed();
}

// Looks for every message by itself, by the number of its row: any index may be what is damaged.
// What is known of each comes from the table as far as it can be read, and from the indexes over
// it, which hold copies of some columns.
class MessageSearch {
 public:
  MessageSearch(DataSession& data, const QString& select) : data_(data), select_(select) {}

  // Nothing when none can be found.
  std::optional<FolderListing> Run() {
    const bool all = CollectFromIndexes();
    const bool allRows = CollectFromTable();
    if (known_.isEmpty()) return std::nullopt;
    FolderListing listing;
    if (!all && !allRows) listing.unreadable.append(UnreadableMessage());
    for (auto message = known_.cbegin(); message != known_.cend(); ++message) {
      LookFor(message.key(), *message, listing);
    }
    std::sort(
        listing.messages.begin(), listing.messages.end(),
        [](const FolderMessage& a, const FolderMessage& b) { return a.timestamp < b.timestamp; });
    return listing;
  }

 private:
  template <typename Take>
  bool Walk(const QString& select, const Take& take) {
    if (!data_.OpenRecordset(select, CursorKind::ForwardOnly)) return false;
    const RecordsetPtr rows = data_.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) take(*rows);
    return !rows->Failed();
  }

  bool CollectFromIndexes() {
    QHash<qint64, QString> times;
    Walk(QStringLiteral("SELECT rowid, FIELD_TIMESTAMP FROM mail ORDER BY FIELD_TIMESTAMP"),
         [&](const Recordset& row) { times.insert(row.FirstNumber(), MailRow(row).Timestamp()); });
    return Walk(QStringLiteral("SELECT rowid, SERIALID FROM mail ORDER BY SERIALID"),
                [&](const Recordset& row) {
                  const QString time = times.value(row.FirstNumber());
                  known_.insert(row.FirstNumber(), {row.Serial(), {}, time});
                });
  }

  bool CollectFromTable() {
    return Walk(QStringLiteral("SELECT rowid, * FROM mail"), [this](const Recordset& row) {
      const FolderMessage message = Read(MailRow(row));
      known_.insert(row.FirstNumber(), {message.serialId, message.subject, message.timestamp});
    });
  }

  // The condition sees this message alone. The limit keeps the engine from going through others by
  // an index over what the condition asks for.
  void LookFor(qint64 row, const UnreadableMessage& message, FolderListing& listing) {
    std::vector<FolderMessage> found;
    if (List(data_,
             QStringLiteral("WITH mail AS (SELECT * FROM main.mail WHERE rowid = %1 LIMIT 1) ")
                     .arg(row) +
                 select_,
             found)) {
      listing.messages.insert(listing.messages.end(), found.begin(), found.end());
    } else {
      listing.unreadable.append(message);
    }
  }

  DataSession& data_;
  QString select_;
  QHash<qint64, UnreadableMessage> known_;  // by the numbers of their rows
};

}  // namespace

Result<FolderListing> ListFolderMessages(Context& context, const SerialId& folder) {
  const QString select = FolderSqlBuilder(context).Query(folder).Listing();
  if (select.isEmpty()) return StorageError{StorageError::Kind::NotFound, {}};
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  FolderListing listing;
  if (List(context.Data, select + kOldestFirst, listing.messages)) return listing;
  const StorageError reason = ReasonOf(context.Data);
  const bool mayBeDamaged =
      reason.kind != StorageError::Kind::BadStatement && reason.kind != StorageError::Kind::Refused;
  const auto found =
      mayBeDamaged ? MessageSearch(context.Data, select).Run() : std::optional<FolderListing>();
  if (found) return *found;
  return reason;
}

Result<> ReadFolderRows(Context& context, const SerialId& folder,
                        const std::function<void(const MailRow& row)>& take) {
  const QString select = FolderSqlBuilder(context).Query(folder).Listing();
  if (select.isEmpty()) return StorageError{StorageError::Kind::NotFound, {}};
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  if (!context.Data.OpenRecordset(select + kOldestFirst, CursorKind::ForwardOnly,
                                  StatementTrust::UserCondition)) {
    return ReasonOf(context.Data);
  }
  const RecordsetPtr rows = context.Data.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) {
    if (!rows->IsRowDamaged()) take(MailRow(*rows));
  }
  return ResultOf(context.Data, !rows->Failed());
}

Result<FolderListing> ListMessages(Context& context, const SerialIds& serialIds) {
  FolderListing listing;
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  const auto rowsOf = [&](const SerialIds& wanted, std::vector<FolderMessage>& found) {
    return List(context.Data, QStringLiteral("SELECT * FROM mail WHERE") + Among(wanted), found);
  };
  QHash<SerialId, FolderMessage> known;
  for (const SerialIds& wanted : InPieces(serialIds)) {
    std::vector<FolderMessage> found;
    if (!rowsOf(wanted, found)) {
      found.clear();
      for (const SerialId& serialId : wanted) {
        if (!rowsOf({serialId}, found)) listing.unreadable.append({serialId, {}, {}});
      }
    }
    for (const FolderMessage& message : found) known.insert(message.serialId, message);
  }
  for (const SerialId& serialId : serialIds) {
    const auto message = known.constFind(serialId);
    if (message != known.constEnd()) listing.messages.push_back(*message);
  }
  return listing;
}

}  // namespace vorn
