#include "mail/archive/import_messages.h"

#include <QCryptographicHash>
#include <QMultiHash>
#include <QSet>
#include <algorithm>

#include "mail/archive/mail_archive.h"
#include "mail/codec/message_date.h"
#include "mail/codec/message_index.h"
#include "mail/mail_store.h"
#include "mail/message_identity.h"
#include "mail/message_rows.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/group_size.h"
#include "storage/time_text.h"
#include "storage/ui.h"
#include "storage/work_lock.h"

namespace vorn {
namespace {

const QByteArray kEndMark = ".\r\n";
constexpr int kWaitMs = 2000;  // for another import

QString ImportId(const QByteArray& source) {
  return QStringLiteral("import/") +
         QString::fromLatin1(QCryptographicHash::hash(source, QCryptographicHash::Sha256).toHex());
}

// An imported message's bag, under the time at which it arrived.
void FillMessage(Disk& message, const QByteArray& source, const QString& id, int status) {
  MessageBag::SetMessageId(message, id);
  MessageBag::SetFlags(message, QStringLiteral("000"));
  MessageBag::SetStatus(message, status);
  const QDateTime date = MessageDate(source);
  if (date.isValid()) MessageBag::SetTimestamp(message, StoredTimeText(date));
}

class Importer {
 public:
  Importer(Context& context, const QString& folder, ImportCounts& counts)
      : context_(context), store_(context), folder_(folder), counts_(counts) {
    options_.textTypes = Settings(context).TextTypes();
    options_.standardHeaders = Settings(context).HasStandardHeaders();
  }

  // What is stored, by what can be told without its source. Without all of it nothing may be
  // imported: what is stored would be stored again.
  bool ReadStored() {
    const OpenedDatabase opened(context_, DatabaseKind::Mail);
    if (!opened) return false;
    bool read = false;
    if (const RecordsetPtr rows = MessageRows(context_.Data).All()) {
      for (; !rows->Eof(); rows->MoveNext()) {
        const UnreadableMessage stored{rows->SerialID(), rows->Fields(u"FIELD_SUBJECT").toString(),
                                       rows->Fields(u"FIELD_TIMESTAMP").toString()};
        ids_.insert(rows->Fields(u"FIELD_ID").toString(), stored);
        stored_.insert(Key(stored.subject, rows->Fields(u"FIELD_MAILADDRESS").toString()),
                       stored.serialId);
      }
      read = !rows->Failed();
    }
    return read;
  }

  bool Take(const QByteArray& source) {
    const QString id = ImportId(source);
    if (IsKnown(id, source)) {
      ++counts_.known;
      return true;
    }
    Disk message(context_.Data.NewSerialID(QStringLiteral("mail_")));
    FillMessage(message, source, id, kStatusReceived);
    MessageBag::SetFolders(message, folder_);
    group_.Add(source.size());
    switch (store_.StoreReceived(message, source)) {
      case MailStore::Received::Failed:
        return false;
      case MailStore::Received::Known:  // by another program, since the import began
      case MailStore::Received::Alike:
        ++counts_.known;
        return true;
      case MailStore::Received::Stored:
        brought_.insert(id);
        ++counts_.imported;
    }
    if (!group_.IsFull()) return true;
    group_.Clear();
    return context_.Data.FlushGroup();
  }

  // After a failure the engine may have taken back more than the last message.
  void CountStored() {
    counts_.imported = 0;
    const OpenedDatabase opened(context_, DatabaseKind::Mail);
    if (!opened) return;
    if (const RecordsetPtr rows = MessageRows(context_.Data).Names()) {
      for (; !rows->Eof(); rows->MoveNext()) {
        counts_.imported += brought_.contains(rows->Fields(u"FIELD_ID").toString()) ? 1 : 0;
      }
    }
  }

 private:
  static size_t Key(const QString& subject, const QString& addressLines) {
    return qHash(subject + QChar(u'\0') + addressLines);
  }
  // Known is what was imported before, and what came another way and is the same.
  bool IsKnown(const QString& id, const QByteArray& source) {
    const auto imported = ids_.constFind(id);
    if (imported != ids_.cend()) {
      // What this import brought is not read again.
      if (!imported->serialId.isEmpty() &&
          store_.LoadMessageSource(Disk(imported->serialId)) != source) {
        counts_.unreadable.append(*imported);
      }
      return true;
    }
    ids_.insert(id, {});
    const MessageIndex index = IndexMessage(source, QString(), options_);
    const QList<QString> alike = stored_.values(Key(index.subject, index.addressLines));
    return std::any_of(alike.begin(), alike.end(), [&](const QString& serialId) {
      const auto stored = store_.LoadMessageSource(Disk(serialId));
      // With the notes of another program, or without the end mark, as an export leaves it out.
      return stored && (IsSameButForNotes(*stored, source) || *stored == source + kEndMark);
    });
  }

  Context& context_;
  MailStore store_;
  QString folder_;
  ImportCounts& counts_;
  IndexOptions options_;
  GroupSize group_;
  QHash<QString, UnreadableMessage> ids_;  // by identifier
  QSet<QString> brought_;                  // identifiers, by this import
  QMultiHash<size_t, QString> stored_;     // serial identifiers
};

}  // namespace

bool ImportMessages(Context& context, const QString& path, const QString& folder,
                    ImportCounts* counts, QString* error, const WorkProgress& progress) {
  WorkLock work(context, kImportWork);
  if (!work.Take(kWaitMs)) {
    *error = work.HeldWords();
    return false;
  }
  Importer importer(context, folder, *counts);
  if (!importer.ReadStored()) {
    *error = Ui::tr("保存されているメッセージを読み込めないため、取り込みません。") +
             context.Data.LastError().text;
    return false;
  }
  context.Data.BeginGroup(MailDatabasePath(context));
  bool stored = true;
  bool ended = false;
  const bool read = ReadArchive(
      path,
      [&](const QByteArray& source) {
        stored = importer.Take(source);
        ended = stored && progress && !progress(counts->imported + counts->known);
        return stored && !ended;
      },
      error);
  const bool written = context.Data.EndGroup();
  if (ended) *error = Ui::tr("中止しました。");
  if (stored && written) return read && !ended;
  *error = Ui::tr("メッセージを保存できません。") + context.Data.LastError().text;
  importer.CountStored();
  return false;
}

QString TakeMessageFile(Context& context, const QString& path, QString* error) {
  QByteArray source;
  const bool read = ReadArchive(
      path,
      [&source](const QByteArray& first) {
        source = first;
        return false;
      },
      error);
  if (source.isEmpty()) {
    if (read) *error = Ui::tr("「%1」にメッセージがありません。").arg(path);
    return {};
  }
  const QString id = ImportId(source);
  QString known;
  if (const OpenedDatabase mail(context, DatabaseKind::Mail); mail) {
    const RecordsetPtr row = MessageRows(context.Data).Named(id);
    if (row != nullptr && !row->Eof()) known = row->SerialID();
  }
  if (!known.isEmpty()) return known;
  Disk message(context.Data.NewSerialID(QStringLiteral("mail_")));
  FillMessage(message, source, id, -kStatusReceived);
  const QString stored = MailStore(context).StoreMessage(message, source);
  if (stored.isEmpty()) {
    *error = Ui::tr("メッセージを保存できません。") + context.Data.LastError().text;
  }
  return stored;
}

}  // namespace vorn
