#include "mail/window/composing/draft_keeper.h"

#include <QFileInfo>
#include <tuple>

#include "mail/attachment_files.h"
#include "mail/message_document.h"
#include "mail/store/answer_notes.h"
#include "mail/store/drafts.h"
#include "mail/window/composing/message_form.h"

namespace vorn {
namespace {

constexpr int kDraftMs = 30000;
// Attachments above this together are left out of drafts: writing them would hold the window up.
constexpr qint64 kDraftAttachmentBytes = 2 * 1024 * 1024;

qint64 SizeOf(const ModelAttachment& attachment) {
  if (attachment.made) return attachment.made->size();
  return attachment.isNew ? QFileInfo(attachment.path).size()
                          : static_cast<qint64>(attachment.record.Size());
}

QString FileOf(const ModelAttachment& attachment) {
  return attachment.isNew ? attachment.path : attachment.name;
}

bool HasVanished(const ModelAttachment& attachment) {
  return attachment.isNew && !attachment.made && !QFileInfo(attachment.path).isReadable();
}

// Takes out of a draft the files that it cannot hold, and gives them.
QStringList LeaveOut(MessageModel& model) {
  QStringList leftOut;
  qint64 bytes = 0;
  std::erase_if(model.attachments, [&](const ModelAttachment& attachment) {
    const qint64 size = SizeOf(attachment);
    const bool fits = !HasVanished(attachment) && bytes + size <= kDraftAttachmentBytes;
    if (fits) bytes += size;
    if (!fits) leftOut.append(FileOf(attachment));
    return !fits;
  });
  return leftOut;
}

}  // namespace

DraftKeeper::DraftKeeper(Context& context, MessageDocument& document, MessageForm& form,
                         QObject& parent)
    : QTimer(&parent), context_(context), document_(document), form_(form) {
  setObjectName(QStringLiteral("tmDraft"));
  connect(this, &QTimer::timeout, this, &DraftKeeper::Keep);
  start(kDraftMs);
}

// A file that is attached may be on a stick that is pulled: what was kept of it stays.
void DraftKeeper::BringBack(MessageModel& model) const {
  for (ModelAttachment& attachment : model.attachments) {
    const auto held = held_.constFind(attachment.path);
    if (HasVanished(attachment) && held != held_.constEnd()) attachment.made = *held;
  }
}

// Takes out those that cannot be read and have not been, and gives them.
QStringList DraftKeeper::Hold(MessageModel& model) {
  const auto attached = std::exchange(model.attachments, {});
  const auto former = std::exchange(held_, {});
  QStringList leftOut;
  for (ModelAttachment attachment : attached) {
    if (attachment.isNew) {
      const Result<QByteArray> bytes = ReadAttachment(attachment, {});
      if (!bytes && !former.contains(attachment.path)) {
        leftOut.append(FileOf(attachment));
        continue;
      }
      attachment.made = bytes ? *bytes : former.value(attachment.path);
      held_.insert(attachment.path, *attachment.made);
    }
    model.attachments.push_back(attachment);
  }
  return leftOut;
}

void DraftKeeper::Keep() {
  // Also while a question stands between the button that sends and the storing.
  const bool isWritten = document_.IsEditable() || document_.IsSending();
  if (!isDue_ || !isWritten) return;
  isDue_ = false;
  MessageModel model = form_.Take(document_.Model());
  BringBack(model);
  QStringList leftOut = LeaveOut(model);
  leftOut += Hold(model);
  Result<QByteArray> source = document_.Compose(model);
  if (!source) {  // the text counts, also when an attachment cannot be read
    for (const ModelAttachment& attachment : model.attachments) leftOut += FileOf(attachment);
    model.attachments.clear();
    source = document_.Compose(model);
  }
  const Result<> kept =
      source ? Drafts::Keep(context_, document_.Tag(), *source, leftOut) : source.Error();
  isDue_ = !kept;  // a full disk may have room again at the next turn
  if (told_) told_(kept);
  if (!kept) return;
  if (const auto answered = document_.AnsweredMessage()) {
    std::ignore = AnswerNotes::Keep(context_, document_.Tag(), *answered);
  }
}

}  // namespace vorn
