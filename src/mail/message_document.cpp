#include "mail/message_document.h"

#include "mail/attachment_files.h"
#include "mail/codec/mime/inline_images.h"
#include "mail/compose_message.h"
#include "mail/store/message_rows.h"
#include "objects/settings.h"

namespace vorn {

QString MessageDocument::File() const {
  return MessageBag(*request_).File(context_);
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
  if (isGone) MessageBag::SetStatus(*request_, kStatusEdit);  // it waits no longer
  edits_.Begin(request_);
  tag_ = request_->Serial();
  return opened;
}

QString MessageDocument::ShownHtml() const {
  return WithInlineImages(html_, source_, Request().ContentIndex());
}

Result<QByteArray> MessageDocument::Compose(const MessageModel& model) const {
  ComposeOptions options;
  options.charset = code_.charset;
  options.settings = EditSettings::From(Settings(context_));
  options.boundaryToken = context_.Data.NewSerialID().Text();
  StorageError unreadable;
  options.read = [&](const ModelAttachment& attachment) {
    const Result<QByteArray> bytes = ReadAttachment(attachment, source_);
    if (!bytes) unreadable = bytes.Error();
    return bytes.ValueOr({});
  };
  const QByteArray source = ComposeMessage(model, options);
  if (unreadable) return unreadable;
  return source;
}

MessageStatus MessageDocument::Status() const {
  return request_ == nullptr ? kStatusEdit : MessageBag(*request_).Status();
}

bool MessageDocument::IsInDust() const {
  return MessageBag(*request_).IsDust();
}

bool MessageDocument::IsNew() const {
  return request_ != nullptr && Request().IsNew();
}

std::optional<Answered> MessageDocument::AnsweredMessage() const {
  const OpenMode mode = Request().Mode();
  if (!Request().HasOriginal() || (!IsReply(mode) && !IsForward(mode))) {
    return AnswerNotes::Find(context_, tag_);
  }
  return Answered{Request().Original(), IsForward(mode) ? kFlagForwarded : kFlagAnswered};
}

StoredState MessageDocument::BeginSending() {
  const StoredState before = MessageBag(*request_).State();
  Request().SetSent(true);
  MessageBag::SetStatus(*request_, kStatusWaiting);
  return before;
}

void MessageDocument::EndSending(StoredState before) {
  Request().SetSent(false);
  MessageBag::SetState(*request_, before);
}

bool MessageDocument::IsSending() const {
  return request_ != nullptr && Request().IsSent();
}

bool IsErased(Context& context, const MessageDocument& document) {
  const bool wasStored =
      document.Bag() != nullptr && !document.IsNew() && !document.Source().isEmpty();
  if (!wasStored) return false;
  const MessageBag message(*document.Bag());
  const OpenedDatabase mail(context, message.Database(), document.File());
  if (!mail) return false;
  const RecordsetPtr row = MessageRows(context.Data).Of(document.Tag());
  return row != nullptr && row->Eof() && !row->Failed();
}

}  // namespace vorn
