#include "transfer/plan/outgoing_source.h"

#include "mail/codec/mime/mime_codec.h"

namespace vorn {
namespace {

// One "@" alone may stand in an identifier (RFC 5322 section 3.6.4), and serial identifiers hold
// one.
QByteArray MessageId(const QString& address, const SerialId& serialId) {
  QString right = serialId.Text();
  right.replace(u'@', u'.');
  return '<' + MimeCodec::EncodeIdentifier(address.toUtf8()).toLatin1() + '@' + right.toLatin1() +
         '>';
}

// The new sender first, the former ones after it.
QByteArray FromField(const OutgoingSender& sender) {
  QList<MimeCodec::Mailbox> mailboxes{{sender.address, sender.display}};
  QString all = sender.display;
  for (const AddressEntry& former : sender.former) {
    mailboxes.append({former.address, former.displayName});
    all += former.displayName;
  }
  return MimeCodec::EncodeAddressField("From:", mailboxes,
                                       MimeCodec::ChooseOutput(all, CharsetChoice::Automatic));
}

}  // namespace

QByteArray OutgoingSource(const QByteArray& source, const SerialId& serialId,
                          const OutgoingSender& sender) {
  QByteArray outgoing =
      MimeCodec::RemoveField(MimeCodec::RemoveField(source, "Date:"), "Message-ID:");
  QByteArray added = "Date: " + MimeCodec::CurrentDateText().toLatin1() +
                     "\r\nMessage-ID: " + MessageId(sender.address, serialId) + "\r\n";
  if (sender.rewrite && sender.keepsFormer && !sender.former.isEmpty()) {
    outgoing = MimeCodec::RemoveField(outgoing, "Sender:");
    added += MimeCodec::EncodeAddressField(
                 "Sender:", {{sender.address, sender.display}},
                 MimeCodec::ChooseOutput(sender.display, CharsetChoice::Automatic)) +
             "\r\n";
  } else if (sender.rewrite) {
    outgoing = MimeCodec::RemoveField(outgoing, "From:");
    added += FromField(sender) + "\r\n";
  }
  return MimeCodec::InsertFields(outgoing, added);
}

}  // namespace vorn
