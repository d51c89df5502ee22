#include "mail/message_document.h"

#include <utility>

#include "mail/attachment_files.h"
#include "mail/codec/flag_string.h"
#include "mail/codec/inline_images.h"
#include "mail/compose_message.h"
#include "mail/mail_store.h"
#include "objects/settings.h"
#include "storage/databases.h"

namespace vorn {
namespace {

const QString kProcess = QStringLiteral("process");
const QString kSend = QStringLiteral("send");

}  // namespace

QString MessageDocument::File() const {
  return request_->Text(u"file", MailDatabasePath(context_));
}

OpenedMessage MessageDocument::Open(bool applyStoredCharset, const QByteArray& shown) {
  if (applyStoredCharset) code_.Forget();
  ReadingCode code(code_.charset, code_.isPicked);
  if (code_.readAs) code.forced = code_.readAs->charset;
  OpenedMessage opened = OpenMessage(context_, *request_, applyStoredCharset, code, shown);
  code_.charset = opened.charset;
  model_ = opened.model;
  source_ = opened.source;
  html_ = opened.html;
  // One that is gone has nothing that could be edited or sent.
  const bool isGone = !opened.found && !IsNew() && opened.source.isEmpty();
  isUnreadable_ = opened.unreadable.has_value() || isGone;
  if (isGone) request_->Let(kProcess, static_cast<int>(kStatusEdit));  // it waits no longer
  changedState_ = 0;
  tag_ = request_->SerialID();
  return opened;
}

QString MessageDocument::ShownHtml() const {
  return WithInlineImages(html_, source_, request_->Text(u"content"));
}

QByteArray MessageDocument::Compose(const MessageModel& model, QString* error) const {
  ComposeOptions options;
  options.charset = code_.charset;
  options.settings = EditSettings::From(Settings(context_));
  options.boundaryToken = context_.Data.NewSerialID();
  options.read = [this, error](const ModelAttachment& attachment) {
    return ReadAttachment(attachment, source_, error);
  };
  const QByteArray source = ComposeMessage(model, options);
  return error->isEmpty() ? source : QByteArray();
}

int MessageDocument::Status() const {
  return request_ == nullptr ? static_cast<int>(kStatusEdit)
                             : qAbs(request_->Number(kProcess, kStatusEdit));
}

bool MessageDocument::IsInDust() const {
  return request_->Number(kProcess) < 0;
}

bool MessageDocument::IsNew() const {
  return request_ != nullptr && request_->Flag(u"new");
}

int MessageDocument::BeginSending() {
  const int before = request_->Number(kProcess);
  request_->Let(kSend, true);
  request_->Let(kProcess, static_cast<int>(kStatusWaiting));
  return before;
}

void MessageDocument::EndSending(int before) {
  request_->Let(kSend, false);
  request_->Let(kProcess, before);
}

bool MessageDocument::IsSending() const {
  return request_ != nullptr && request_->Flag(kSend);
}

void MessageDocument::ToggleDust() {
  request_->Let(kProcess, -request_->Number(kProcess));
  changedState_ |= kStateStatus;
}

void MessageDocument::SetFolders(const QString& folders) {
  request_->Let(QStringLiteral("folder"), folders);
  changedState_ |= kStateFolders;
}

// The automatic choice leaves the stored one as it was.
void MessageDocument::KeepCode() {
  request_->Let(QStringLiteral("flag"),
                SetFlagChar(request_->Text(u"flag"), kFlagCode,
                            QString::number(static_cast<int>(code_.charset))));
  changedState_ |= kStateFlag;
}

// Only what was changed here: the folder's page may have changed the rest meanwhile.
bool MessageDocument::StoreState() {
  const int changed = std::exchange(changedState_, 0);
  MailStore store(context_);
  // A message may have been sent since the window was opened: the dust bin changes the sign alone.
  bool stored = (changed & kStateStatus) == 0 || store.SetDust(*request_, IsInDust());
  const int rest = changed & ~kStateStatus;
  if (rest != 0) stored = store.UpdateMessageState(rest, *request_, true) && stored;
  return stored;
}

}  // namespace vorn
