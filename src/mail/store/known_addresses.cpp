#include "mail/store/known_addresses.h"

#include "mail/store/mail_row.h"
#include "mail/store/message_rows.h"
#include "objects/account.h"
#include "objects/any_object.h"
#include "objects/book_object.h"
#include "objects/object_types.h"
#include "storage/base/shown_text.h"
#include "storage/base/time_text.h"
#include "storage/databases.h"
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
  void Add(const QList<AddressEntry>& entries) {
    for (const AddressEntry& entry : entries) Add(entry);
  }
  const QStringList& Texts() const { return texts_; }

 private:
  QSet<QString> seen_;
  QStringList texts_;
};

// Of address lines all but the senders.
QList<AddressEntry> Recipients(const QString& lines) {
  QList<AddressEntry> entries;
  for (const QString& line : lines.split(kLineBreak, Qt::SkipEmptyParts)) {
    const AddressEntry entry = ParseAddressEntry(line);
    if (entry.kind.compare(u"FROM", Qt::CaseInsensitive) != 0) entries.append(entry);
  }
  return entries;
}

}  // namespace

// A file that cannot be read leaves what is known.
void KnownAddresses::ReadSent() {
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return;
  const RecordsetPtr rows = MessageRows(context_.Data).SentSince(readTo_);
  if (rows == nullptr) return;
  QList<AddressEntry> entries;
  for (int i = 0; i < kSentMessages && !rows->Eof(); ++i, rows->MoveNext()) {
    const MailRow row(*rows);
    if (i == 0) readTo_ = row.Timestamp();
    const QString message = row.Timestamp() + row.Serial().Text();
    if (read_.contains(message)) continue;
    read_.insert(message);
    entries += Recipients(row.AddressLines());
  }
  recipients_ = entries + recipients_;
  // A message from the future, by a clock that was wrong, hides none.
  readTo_ = qMin(readTo_, CurrentTimeText());
}

QStringList KnownAddresses::Offers() {
  AddressCollector collector;
  for (const DiskPtr& object : context_.Objects) {
    if (AnyObject(*object).Is(object_type::kBook)) {
      collector.Add(Recipients(BookObject(*object).Lines()));
    }
  }
  ReadSent();
  collector.Add(recipients_);
  for (const DiskPtr& object : context_.Objects) {
    if (!AnyObject(*object).Is(object_type::kAccount)) continue;
    const Account account(object);
    collector.Add(
        ParseAddressEntry(QStringLiteral("TO: ") + account.Address() + u' ' + account.Display()));
  }
  return collector.Texts();
}

}  // namespace vorn
