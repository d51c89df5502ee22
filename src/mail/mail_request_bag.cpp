#include "mail/mail_request_bag.h"

#include "mail/store/message_bag.h"

namespace vorn {

void MailRequestBag::Begin(Disk& bag, const MailRequest& request) {
  WindowRequest::BeginWindow(bag, WantedWindow::Message);
  WindowRequest::SetShow(bag, request.show);
  WindowRequest::SetOpensAnother(bag, request.mode != OpenMode::Show);
  WindowRequest::SetUpdates(bag, true);
  MessageBag::SetDatabase(bag, request.database);
  MessageBag::SetFile(bag, request.file);
  MessageBag::SetPassword(bag, request.password);
  MailRequestBag(bag).Become(request.mode, request.isNew);
  bag.Let(kAutoSend, request.autoSend);
  bag.Let(kEvent, request.event.Text());
  bag.Let(kMailto, request.mailto);
}

void MailRequestBag::Become(OpenMode mode, bool isNew) {
  bag_.Let(kMode, QVariant::fromValue(mode));
  bag_.Let(kNew, isNew);
}

void MailRequestBag::TakeRow(const MailRow& row) {
  // What the row lacks the bag lacks, too.
  const auto take = [this](const QString& key, const QString& text) {
    bag_.Let(key, text.isNull() ? QVariant() : text);
  };
  take(kContent, row.ContentIndex());
  take(kSubject, row.Subject());
  take(kTimestamp, row.Timestamp());
  take(kAddressLines, row.AddressLines());
  MessageBag::SetState(bag_, row.State());
  MessageBag::SetFlags(bag_, row.Flags());
}

void MailRequestBag::BecomeNew(const SerialId& serialId) {
  MessageBag::SetStatus(bag_, kStatusEdit);
  // What the user did with the other one he did not do with this one.
  MessageBag::SetFlags(bag_, MessageBag(bag_).Flags().OfMessage());
  bag_.Let(kOriginal, bag_.SerialID());
  bag_.LetSerialID(serialId.Text());
}

}  // namespace vorn
