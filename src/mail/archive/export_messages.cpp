#include "mail/archive/export_messages.h"

#include "mail/codec/content_index.h"
#include "mail/mail_store.h"
#include "objects/settings.h"
#include "storage/ui.h"

namespace vorn {

ExportOutcome ExportMessages(Context& context, const ExportOrder& order,
                             const WorkProgress& progress) {
  ExportOutcome outcome;
  // Read to its end before anything is written, since other work may open the database meanwhile.
  FolderListing listing =
      order.listing ? *order.listing : ListFolderMessages(context, order.folder);
  if (!listing.read) {
    outcome.error = Ui::tr("フォルダを読み込めません。") + context.Data.LastError().text;
    return outcome;
  }
  outcome.unreadable = std::move(listing.unreadable);
  ArchiveWriter writer(order.format, order.path, order.overwrite);
  bool goesOn = writer.Open();
  MailStore store(context);
  const bool leavesMarks = Settings(context).HasStandardHeaders();
  for (const FolderMessage& message : listing.messages) {
    if (!goesOn) break;
    const std::optional<QByteArray> source = store.LoadMessageSource(Disk(message.serialId));
    if (!source) {
      outcome.unreadable.append({message.serialId, message.subject, message.timestamp});
      continue;
    }
    const bool hasMark = leavesMarks && !message.isReceived;
    goesOn = writer.Write(hasMark ? MimeCodec::WithoutEndMark(*source) : *source, message.subject,
                          message.opened);
    if (goesOn) ++outcome.count;
    if (goesOn && progress && !progress(outcome.count)) {
      outcome.error = Ui::tr("中止しました。");
      goesOn = false;
    }
  }
  outcome.complete = goesOn && writer.Close();
  if (outcome.error.isEmpty()) outcome.error = writer.Error();
  if (!outcome.complete) outcome.count = 0;
  return outcome;
}

}  // namespace vorn
