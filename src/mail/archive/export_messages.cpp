#include "mail/archive/export_messages.h"

#include "mail/codec/mime/content_index.h"
#include "mail/store/mail_store.h"
#include "objects/settings.h"
#include "storage/base/time_text.h"
#include "storage/ui.h"

namespace vorn {

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
  MailStore store(context);
  const bool dropsEnd = Settings(context).Standards().dropsOwnEnd;
  for (const FolderMessage& message : listing->messages) {
    if (!written) break;
    const Result<QByteArray> source = store.LoadMessageSource(Disk(message.serialId));
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
