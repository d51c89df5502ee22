#include "mail/mail_request_bag.h"

#include "mail/store/message_bag.h"

namespace vorn {

void MailRequestBag::TakeRow(const Recordset& row) {
  bag_.Let(kContent, row.Fields(u"FIELD_CONTENT"));
  bag_.Let(kSubject, row.Fields(u"FIELD_SUBJECT"));
  bag_.Let(kTimestamp, row.Fields(u"FIELD_TIMESTAMP"));
  bag_.Let(kAddressLines, row.Fields(u"FIELD_MAILADDRESS"));
  MessageBag::SetState(bag_, MessageBag::State::Of(row.Fields(u"STATUS").toInt()));
  MessageBag::SetFlags(bag_, row.Fields(u"FIELD_FLAG").toString());
}

void MailRequestBag::BecomeNew(const QString& serialId) {
  MessageBag::SetStatus(bag_, kStatusEdit);
  // What the user did with the other one he did not do with this one.
  MessageBag::SetFlags(bag_, MessageBag(bag_).Flags().left(kFlagAttachment));
  bag_.Let(kOriginal, bag_.SerialID());
  bag_.LetSerialID(serialId);
}

}  // namespace vorn
