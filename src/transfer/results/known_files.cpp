#include "transfer/results/known_files.h"

#include <algorithm>

#include "mail/store/erased_messages.h"
#include "mail/store/mail_row.h"
#include "mail/store/message_rows.h"
#include "objects/settings.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/file_notes.h"
#include "storage/ui.h"

namespace vorn {

void KnownFiles::Begin() {
  hasUnnamed_.reset();
  hasErased_.clear();
  paths_ = ProfileBag(*context_.Session).MailFiles().split(kLineBreak);
  if (!Settings(context_).Care().knowsFormerFiles) return;
  // Also those that were used before, so that a new file does not begin with all that they have.
  for (const QString& file : ProfileBag(*context_.Session).History().split(kLineBreak)) {
    if (!file.isEmpty() && HasContent(PlatformPath(context_, file))) paths_.append(file);
  }
  paths_.removeDuplicates();
}

// A message in any of the files is stored, whichever is asked last.
Result<KnownFiles::Holders> KnownFiles::Ask(const QString& messageId) {
  Holders holders;
  Result<> asked;
  for (const QString& file : paths_) {
    const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file);
    if (!opened) {
      if (opened.Error().kind == StorageError::Kind::Busy) asked = opened.Error();
      continue;
    }
    const Result<bool> has = MessageRows(context_.Data).HasName(messageId);
    if (!has) {
      asked = has.Error();
    } else if (*has) {
      holders.files.append(file);
    } else if (const Result<bool> was = WasErased(file, messageId); was) {
      holders.isErased = holders.isErased || *was;
    } else {
      asked = was.Error();
    }
  }
  if (!asked) return asked.Error();
  return holders;
}

bool KnownFiles::HasSize(const QString& messageId, qint64 bytes) {
  return std::any_of(paths_.begin(), paths_.end(), [&](const QString& file) {
    const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file);
    if (!opened) return false;
    const RecordsetPtr row = MessageRows(context_.Data).Named(messageId);
    return row != nullptr && !row->Eof() && MailRow(*row).SourceBytes() == bytes;
  });
}

bool KnownFiles::HasUnnamed(const QString& scope) {
  if (hasUnnamed_) return *hasUnnamed_;
  const QString start = scope + QStringLiteral("sha256:");
  hasUnnamed_ = std::any_of(paths_.begin(), paths_.end(), [&](const QString& file) {
    const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file);
    if (!opened) return opened.Error().kind == StorageError::Kind::Busy;
    return MessageRows(context_.Data).HasNamePrefix(start).ValueOr(true);
  });
  return *hasUnnamed_;
}

// In the open file. Who has thrown a message away for good does not want it once more.
Result<bool> KnownFiles::WasErased(const QString& file, const QString& messageId) {
  if (!Settings(context_).Care().knowsErased) return false;
  ErasedMessages erased(context_.Data);
  if (!hasErased_.contains(file)) {
    const Result<bool> any = erased.HasAny();
    if (!any) return any;
    hasErased_[file] = *any;
  }
  return hasErased_[file] ? erased.Has(messageId) : false;
}

}  // namespace vorn
