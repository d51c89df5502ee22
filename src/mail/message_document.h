#pragma once

#include <optional>

#include "mail/codec/mime/code_offers.h"
#include "mail/mail_request_bag.h"
#include "mail/open_message.h"
#include "mail/state_edits.h"
#include "mail/store/answer_notes.h"
#include "mail/store/message_bag.h"
#include "storage/base/result.h"
#include "storage/base/serial_id.h"

namespace vorn {

/// The code in which a message is shown, and in which one that is edited is written.
struct CodeChoice {
  CharsetChoice charset = CharsetChoice::Automatic;
  bool isPicked = false;            ///< by the user, for the message that is shown
  std::optional<CodeOffer> readAs;  ///< instead, and for this view only

  /// The user picks a code that is kept with the message.
  void Pick(CharsetChoice chosen) { *this = {chosen, true, std::nullopt}; }
  /// The message is read in its own code.
  void Forget() { *this = {charset, false, std::nullopt}; }
};

/// The message of a message window, apart from the window: the request for it, as what it was
/// opened, and the edits of its state.
class MessageDocument {
 public:
  explicit MessageDocument(Context& context) : context_(context), edits_(context) {}

  /// Another message takes the place of this one; it is yet to be opened.
  void Take(const DiskPtr& request) { request_ = request; }
  /// The request's bag; null before the first.
  const DiskPtr& Bag() const { return request_; }
  MailRequestBag Request() const { return MailRequestBag(*request_); }
  /// The serial identifier under which it was opened.
  SerialId Tag() const { return tag_; }
  /// The mail file that it is in.
  QString File() const;

  /// Opens the request's message; see `OpenMessage`. Edits that were not stored are forgotten.
  OpenedMessage Open(bool applyStoredCharset, const QByteArray& shown);
  MessageModel& Model() { return model_; }
  const MessageModel& Model() const { return model_; }
  const QByteArray& Source() const { return source_; }
  /// The HTML part with the message's own pictures in it.
  QString ShownHtml() const;
  CodeChoice& Code() { return code_; }
  const CodeChoice& Code() const { return code_; }
  /// The source of `model` in that code; fails when an attachment cannot be read.
  Result<QByteArray> Compose(const MessageModel& model) const;

  /// Its status, in the dust or not.
  MessageStatus Status() const;
  bool IsInDust() const;
  /// It has not been stored yet.
  bool IsNew() const;
  /// Nothing of it may be stored, sent or answered.
  bool IsUnreadable() const { return isUnreadable_; }
  bool IsEditable() const { return Status() == kStatusEdit && !isUnreadable_; }
  bool IsWaiting() const { return Status() == kStatusWaiting; }
  /// The message that it answers or forwards, also where it was stored before it is sent.
  std::optional<Answered> AnsweredMessage() const;

  /// It is to be stored as one that waits. Gives what `EndSending` takes when that does not happen.
  StoredState BeginSending();
  void EndSending(StoredState before);
  bool IsSending() const;

  /// What of its state is changed in the window.
  StateEdits& Edits() { return edits_; }

 private:
  Context& context_;
  DiskPtr request_;
  SerialId tag_;
  MessageModel model_;
  QByteArray source_;
  QString html_;
  CodeChoice code_;
  bool isUnreadable_ = false;
  StateEdits edits_;
};

/// Whether the message was stored when it was opened and is so no more; false as well where its
/// file cannot be asked.
bool IsErased(Context& context, const MessageDocument& document);

}  // namespace vorn
