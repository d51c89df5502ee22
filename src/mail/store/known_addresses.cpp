#include "mail/store/known_addresses.h"

#include <QSet>

#include "mail/codec/address.h"
#include "mail/store/message_rows.h"
#include "objects/account.h"
#include "objects/any_object.h"
#include "objects/book_object.h"
#include "objects/object_types.h"
#include "storage/databases.h"
#include "storage/shown_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kSentMessages = 1000;  // looked through for past recipients

class AddressCollector {
 public:
  void Add(const AddressEntry& entry) {
    const QString key = entry.address.toLower();
    if (key.isEmpty() || seen_.contains(key)) return;
    seen_.insert(key);
    AddressEntry plain = entry;
    plain.displayName = WithoutDirectionMarks(entry.displayName);
    texts_.append(TypedForm(plain));
  }
  void AddLines(const QString& lines) {
    for (const QString& line : lines.split(kLineBreak, Qt::SkipEmptyParts)) {
      const AddressEntry entry = ParseAddressEntry(line);
      if (entry.kind.compare(u"FROM", Qt::CaseInsensitive) != 0) Add(entry);
    }
  }
  const QStringList& Texts() const { return texts_; }

 private:
  QSet<QString> seen_;
  QStringList texts_;
};

void AddPastRecipients(Context& context, AddressCollector& collector) {
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return;
  if (const RecordsetPtr rows = MessageRows(context.Data).Sent()) {
    for (int i = 0; i < kSentMessages && !rows->Eof(); ++i, rows->MoveNext()) {
      collector.AddLines(rows->Fields(u"FIELD_MAILADDRESS").toString());
    }
  }
}

}  // namespace

QStringList KnownAddresses(Context& context) {
  AddressCollector collector;
  for (const DiskPtr& object : context.Objects) {
    if (AnyObject(*object).Is(object_type::kBook)) collector.AddLines(BookObject(*object).Lines());
  }
  AddPastRecipients(context, collector);
  for (const DiskPtr& object : context.Objects) {
    if (!AnyObject(*object).Is(object_type::kAccount)) continue;
    const Account account(object);
    collector.Add(
        ParseAddressEntry(QStringLiteral("TO: ") + account.Address() + u' ' + account.Display()));
  }
  return collector.Texts();
}

}  // namespace vorn
