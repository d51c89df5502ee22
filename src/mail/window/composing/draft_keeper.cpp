#include "mail/window/composing/draft_keeper.h"

#include <QFileInfo>

#include "mail/message_document.h"
#include "mail/store/drafts.h"
#include "mail/window/composing/message_form.h"

namespace vorn {
namespace {

constexpr int kDraftMs = 30000;
// Attachments above this together are left out of drafts: writing them would hold the window up.
constexpr qint64 kDraftAttachmentBytes = 2 * 1024 * 1024;

qint64 SizeOf(const ModelAttachment& attachment) {
  return attachment.isNew ? QFileInfo(attachment.path).size()
                          : static_cast<qint64>(attachment.record.Size());
}

}  // namespace

DraftKeeper::DraftKeeper(Context& context, MessageDocument& document, MessageForm& form,
                         QObject& parent)
    : QTimer(&parent), context_(context), document_(document), form_(form) {
  setObjectName(QStringLiteral("tmDraft"));
  connect(this, &QTimer::timeout, this, &DraftKeeper::Keep);
  start(kDraftMs);
}

void DraftKeeper::Keep() {
  // Also while a question stands between the button that sends and the storing.
  const bool isWritten = document_.IsEditable() || document_.IsSending();
  if (!isDue_ || !isWritten) return;
  isDue_ = false;
  MessageModel model = form_.Take(document_.Model());
  qint64 bytes = 0;
  for (const ModelAttachment& attachment : model.attachments) bytes += SizeOf(attachment);
  if (bytes > kDraftAttachmentBytes) model.attachments.clear();
  Result<QByteArray> source = document_.Compose(model);
  if (!source) {  // the text counts, also when an attachment has vanished
    model.attachments.clear();
    source = document_.Compose(model);
  }
  // A full disk may have room again at the next turn.
  isDue_ = !source || !Drafts::Keep(context_, document_.Tag(), *source);
}

}  // namespace vorn
