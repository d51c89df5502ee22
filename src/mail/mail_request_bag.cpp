#include "mail/mail_request_bag.h"

#include "mail/store/message_bag.h"

namespace vorn {

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
