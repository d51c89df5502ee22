#pragma once

#include <QString>

namespace vorn {

/// One address line taken apart.
struct AddressEntry {
  QString kind;  ///< as written, such as "to"; "BC", "NO" and "RE" for their long forms
  QString address;
  QString displayName;  ///< possibly empty
  QString canonical;    ///< "KIND: address name"; empty without an address
  QString presentable;  ///< "name <address>" or the address; empty without an address
};

/// Turns one decoded address header, name included, into address lines joined with CR LF: the name
/// upper-cased with its colon, a blank, the address, and, when there is one, a blank and the
/// display name.
QString ParseAddressList(const QString& header);

/// Takes one address line apart. Never fails; a line without a known kind is a "to:" line.
AddressEntry ParseAddressEntry(const QString& line);

}  // namespace vorn
