#include "mail/shown_addresses.h"

#include "mail/codec/header/address.h"
#include "storage/base/shown_text.h"

namespace vorn {

QStringList ShownAddresses(const MessageModel& model, QStringView kind) {
  QStringList shown;
  for (const AddressEntry& entry : model.addresses) {
    if (kind.compare(entry.kind, Qt::CaseInsensitive) != 0) continue;
    shown.append(IsolatedAddress(ShownInLine(PresentableAddress(entry)).simplified()));
  }
  return shown;
}

}  // namespace vorn
