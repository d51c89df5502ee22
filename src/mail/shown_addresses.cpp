#include "mail/shown_addresses.h"

#include "storage/base/shown_text.h"

namespace vorn {
namespace {

QString SeenName(const AddressEntry& entry) {
  return WithoutHidden(entry.displayName).simplified();
}

// With the address in front, where a narrow place does not cut it off.
QString AddressFirst(const AddressEntry& entry) {
  return entry.address + QStringLiteral(" (") + SeenName(entry) + u')';
}

}  // namespace

bool HasAt(const QString& text) {
  return text.contains(u'@') || text.contains(u'＠') || text.contains(u'﹫');
}

bool NamesAnother(const AddressEntry& entry) {
  return entry.address != kNoAddress &&
         HasAt(SeenName(entry).remove(entry.address, Qt::CaseInsensitive));
}

QString ShownSender(const AddressEntry& entry) {
  const QString name = SeenName(entry);
  if (!HasVisible(name)) {
    return entry.displayName.isEmpty() ? PresentableAddress(entry) : entry.address;
  }
  return NamesAnother(entry) ? AddressFirst(entry) : name;
}

QStringList ShownAddresses(const QList<AddressEntry>& addresses, QStringView kind) {
  QStringList shown;
  for (const AddressEntry& entry : addresses) {
    if (kind.compare(entry.kind, Qt::CaseInsensitive) != 0) continue;
    const QString text = NamesAnother(entry) ? AddressFirst(entry) : PresentableAddress(entry);
    shown.append(IsolatedAddress(ShownInLine(text).simplified()));
  }
  return shown;
}

}  // namespace vorn
