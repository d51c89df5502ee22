#include "mail/archive/export_messages.h"

#include <QHash>
#include <optional>

#include "mail/codec/mime/content_index.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_rows.h"
#include "objects/settings.h"
#include "storage/base/time_text.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// Reads sources by the identifiers of their messages, and where the index over those is damaged by
// the numbers of their rows, which the table tells.
class Sources {
 public:
  explicit Sources(Context& context) : context_(context), store_(context) {}

  Result<QByteArray> Of(const SerialId& serialId) {
    Result<QByteArray> source = store_.LoadMessageSource(Disk(serialId));
    if (source || source.Error().kind == StorageError::Kind::NotFound) return source;
    if (!numbers_) numbers_ = ReadNumbers();
    const qint64 row = numbers_->value(serialId);
    return row > 0 ? store_.LoadSourceOfRow(row) : source;
  }

 private:
  // As far as the table can be read.
  QHash<SerialId, qint64> ReadNumbers() {
    QHash<SerialId, qint64> numbers;
    const OpenedDatabase mail(context_, DatabaseKind::Mail);
    const RecordsetPtr rows = mail ? MessageRows(context_.Data).Numbers() : nullptr;
    for (; rows != nullptr && !rows->Eof(); rows->MoveNext()) {
      numbers.insert(rows->Serial(), rows->FirstNumber());
    }
    return numbers;
  }

  Context& context_;
  MailStore store_;
  std::optional<QHash<SerialId, qint64>> numbers_;
};

}  // namespace

ExportOutcome ExportMessages(Context& context, const ExportOrder& order,
                             const WorkProgress& progress) {
  ExportOutcome outcome;
  // Read to its end before anything is written, since other work may open the database meanwhile.
  const Result<FolderListing> listing =
      order.listing ? *order.listing : ListFolderMessages(context, order.folder);
  if (!listing) {
    outcome.complete = listing.Error().Behind(Ui::tr("フォルダを読み込めません。"));
    return outcome;
  }
  outcome.unreadable = listing->unreadable;
  ArchiveWriter writer(order.format, order.path, order.overwrite);
  Result<> written = writer.Open();
  Sources sources(context);
  const bool dropsEnd = Settings(context).Standards().dropsOwnEnd;
  for (const FolderMessage& message : listing->messages) {
    if (!written) break;
    const Result<QByteArray> source = sources.Of(message.serialId);
    if (!source) {
      outcome.unreadable.append({message.serialId, message.subject, message.timestamp});
      continue;
    }
    const bool hasEnd = dropsEnd && !message.isReceived;
    written = writer.Write(hasEnd ? MimeCodec::WithoutEndMark(*source) : *source,
                           {message.subject, message.opened, StoredTime(message.timestamp)});
    if (written) ++outcome.count;
    if (written && progress && !progress(outcome.count)) {
      written = StorageError{StorageError::Kind::Other, Ui::tr("中止しました。")};
    }
  }
  if (written) written = writer.Close();
  outcome.complete = written;
  if (!written) outcome.count = 0;
  return outcome;
}

}  // namespace vorn
