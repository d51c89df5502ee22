#include "mail/address_book.h"

#include <QSet>

#include "mail/open_message.h"
#include "objects/any_object.h"
#include "objects/book_object.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QList<AddressEntry> Entries(const QString& lines) {
  QList<AddressEntry> entries;
  for (const QString& line : lines.split(kLineBreak, Qt::SkipEmptyParts)) {
    entries.append(ParseAddressEntry(line, true));
  }
  return entries;
}

QList<AddressEntry> OfKinds(const QList<AddressEntry>& entries, const QStringList& kinds) {
  QList<AddressEntry> found;
  QSet<QString> seen;
  for (const AddressEntry& entry : entries) {
    const qsizetype before = seen.size();
    if (!kinds.contains(entry.kind, Qt::CaseInsensitive) || !IsMailAddress(entry.address)) continue;
    seen.insert(entry.address.toLower());
    if (seen.size() > before) found.append(entry);
  }
  return found;
}

}  // namespace

QList<DiskPtr> AddressBooks(const Context& context) {
  QList<DiskPtr> books;
  for (const DiskPtr& object : context.Objects) {
    if (AnyObject(*object).Is(object_type::kBook)) books.append(object);
  }
  return books;
}

Result<DiskPtr> MakeAddressBook(Context& context) {
  auto book = std::make_shared<Disk>(context.Data.NewSerialID());
  AnyObject::Begin(*book, object_type::kBook, Ui::tr("アドレスブック"));
  AnyObject::SetEnabled(*book, true);
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, *book);
  if (!saved) return saved.Error();
  context.Objects.Add(book);
  return book;
}

QList<AddressEntry> Correspondents(Context& context, const QString& addressLines) {
  const QList<AddressEntry> all = Entries(addressLines);
  QList<AddressEntry> senders = OfKinds(all, {QStringLiteral("FROM")});
  QStringList addresses;
  for (const AddressEntry& sender : std::as_const(senders)) addresses.append(sender.address);
  if (OwnAddress(context, addresses).isEmpty()) return senders;
  return OfKinds(all, {QStringLiteral("TO"), QStringLiteral("CC"), QStringLiteral("BCC"),
                       QStringLiteral("BC")});
}

Result<int> StoreInBook(Context& context, const DiskPtr& book, const QList<AddressEntry>& people) {
  const QString before = BookObject(*book).Lines();
  QSet<QString> known;
  for (const AddressEntry& entry : Entries(before)) known.insert(entry.address.toLower());
  QStringList lines = before.split(kLineBreak, Qt::SkipEmptyParts);
  int added = 0;
  for (const AddressEntry& entry : people) {
    if (known.contains(entry.address.toLower())) continue;
    known.insert(entry.address.toLower());
    const QString name = entry.displayName.simplified();
    lines.append(QStringLiteral("TO: ") + entry.address +
                 (name.isEmpty() ? QString() : u' ' + name));
    ++added;
  }
  if (added == 0) return 0;
  BookObject::SetLines(*book, lines.join(kLineBreak));
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, *book);
  if (saved) return added;
  BookObject::SetLines(*book, before);
  return saved.Error();
}

}  // namespace vorn
