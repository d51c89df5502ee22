#pragma once

#include <QList>
#include <QString>

namespace vorn {

/// One address line taken apart.
struct AddressEntry {
  QString kind;  ///< as written, such as "to"; "BC", "NO" and "RE" for their long forms
  QString address;
  QString displayName;  ///< possibly empty
};

/// The address line of an entry, "KIND: address name"; empty without an address.
QString CanonicalLine(const AddressEntry& entry);

/// An address as people read it, "name <address>" without quotes, or what there is of the two.
/// Where it is shown, `ShownInLine` and `IsolatedAddress` keep marks in the name from turning the
/// address round.
QString PresentableAddress(const QString& name, const QString& address);
inline QString PresentableAddress(const AddressEntry& entry) {
  return PresentableAddress(entry.displayName, entry.address);
}

/// A name between quotes, as it stands before an address in a header field (RFC 5322 section
/// 3.2.4).
QString QuotedString(const QString& name);

/// What stands in the place of an address that is missing.
inline const QString kUnknownAddress = QStringLiteral("(不明なメールアドレス)");

/// The address of an entry that a user has not finished: what was typed is its display name. Such
/// an entry is only kept in a draft.
inline const QString kNoAddress = QStringLiteral("@");

/// Turns one decoded address header, name included, into address lines joined with CR LF: the name
/// upper-cased with its colon, a blank, the address, and, when there is one, a blank and the
/// display name. A group (RFC 5322 section 3.4) gives its members.
QString ParseAddressList(const QString& header);

/// Takes one address line apart. Never fails; a line without a known kind is a "to:" line. Reply
/// and notification addresses become lower-case unless `keepsCase`.
AddressEntry ParseAddressEntry(const QString& line, bool keepsCase = false);

/// The entries of one kind, such as "from", among address lines.
QList<AddressEntry> EntriesOfKind(const QString& addressLines, QStringView kind);

/// What an entry without an "@" really says, whose line is taken apart at its first blank: the name
/// before something in brackets ("Mail Delivery Subsystem <MAILER-DAEMON>"), a comment behind one
/// word, else all of it.
AddressEntry WithWholeAddress(const AddressEntry& entry);

/// Whether a text can be the address of a mailbox: something on both sides of an "@", without
/// blanks, controls and the marks that separate addresses, which can be sent to (`ToEnvelope`), no
/// longer than a server has to take (RFC 5321 section 4.5.3.1.3).
bool IsMailAddress(const QString& text);

/// Whether one of the entries is of that kind, in whichever case.
bool HasKind(const QList<AddressEntry>& addresses, QStringView kind);

/// What a user typed as one recipient or several, which commas, semicolons (Japanese ones too),
/// line breaks or, between bare addresses, blanks separate: "name <address>", "address (name)" or
/// an address alone, also in the wide forms of an input method. A separator counts only where all
/// that it separates are addresses; otherwise it belongs to a name. Of the entries address and
/// display name are set.
QList<AddressEntry> ReadTypedAddresses(const QString& typed);

/// An entry as it is typed, which `ReadTypedAddresses` reads back: a name that would be read as
/// addresses is quoted.
QString TypedForm(const AddressEntry& entry);

}  // namespace vorn
