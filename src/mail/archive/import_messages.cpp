#include "mail/archive/import_messages.h"

#include <QCryptographicHash>
#include <QMultiHash>
#include <QSet>
#include <algorithm>
#include <optional>
#include <utility>

#include "mail/archive/mail_archive.h"
#include "mail/codec/mime/message_date.h"
#include "mail/codec/mime/message_index.h"
#include "mail/store/mail_row.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_identity.h"
#include "mail/store/message_rows.h"
#include "objects/settings.h"
#include "storage/base/group_size.h"
#include "storage/base/time_text.h"
#include "storage/databases.h"
#include "storage/session/session_result.h"
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
void FillMessage(Disk& message, const QByteArray& source, const QString& id, StoredState state) {
  MessageBag::SetMessageId(message, id);
  MessageBag::SetFlags(message, FlagString(QStringLiteral("000")));
  MessageBag::SetState(message, state);
  const QDateTime date = MessageDate(source);
  if (date.isValid()) MessageBag::SetTimestamp(message, StoredTimeText(date));
}

class Importer {
 public:
  Importer(Context& context, const SerialId& folder)
      : context_(context), store_(context), folder_(folder) {
    const Settings settings(context);
    options_.textTypes = settings.TextTypes();
    options_.readsReplyTo = settings.Standards().readsReplyTo;
    options_.countsShown = settings.Standards().countsShown;
  }

  // What is stored, by what can be told without its source. Without all of it nothing may be
  // imported: what is stored would be stored again.
  Result<> ReadStored() {
    const OpenedDatabase opened(context_, DatabaseKind::Mail);
    if (!opened) return opened.Error();
    const RecordsetPtr rows = MessageRows(context_.Data).All();
    if (rows == nullptr) return ReasonOf(context_.Data);
    for (; !rows->Eof(); rows->MoveNext()) {
      const MailRow row(*rows);
      const UnreadableMessage stored{row.Serial(), row.Subject(), row.Timestamp()};
      ids_.insert(row.MessageId(), stored);
      if (row.State().isDust) inDust_.insert(stored.serialId, IsReturnable(row.State()));
      stored_.insert(Key(stored.subject, row.AddressLines()), stored.serialId);
    }
    return ResultOf(context_.Data, !rows->Failed());
  }

  Result<> Take(const QByteArray& source) {
    QString id = ImportId(source);
    if (const std::optional<SerialId> stored = Find(id, source)) {
      Meet(*stored);
      return {};
    }
    Disk message(context_.Data.NewSerialID(QStringLiteral("mail_")));
    if (takenIds_.contains(id)) id += u'/' + message.SerialID();
    FillMessage(message, source, id, {kStatusReceived});
    MessageBag::SetFolders(message, {folder_});
    group_.Add(source.size());
    const Result<MailStore::Received> received = store_.StoreReceived(message, source);
    if (!received) return received.Error();
    if (*received != MailStore::Received::Stored) {  // by another program, since the import began
      ++counts_.known;
      return {};
    }
    brought_.insert(id);
    counts_.back.intoDust.append(message.Serial());
    ++counts_.imported;
    if (!group_.IsFull()) return {};
    group_.Clear();
    return context_.Data.Group().Flush();
  }

  // What was met in the dust bin is taken out of it.
  Result<> Return() {
    const Result<Moved> moved = TakeOutOfDust(context_, met_, folder_);
    if (!moved) return moved.Error();
    counts_.returned = static_cast<int>(moved->back.intoDust.size());
    counts_.known += static_cast<int>(met_.size()) - counts_.returned;  // somebody else did
    counts_.back.Add(moved->back);
    return {};
  }

  const ImportCounts& Counts() const { return counts_; }
  // After a failure the engine may have taken back more than the last message.
  void CountStored() {
    counts_.imported = 0;
    counts_.returned = 0;
    const OpenedDatabase opened(context_, DatabaseKind::Mail);
    if (!opened) return;
    if (const RecordsetPtr rows = MessageRows(context_.Data).Names()) {
      for (; !rows->Eof(); rows->MoveNext()) {
        counts_.imported += brought_.contains(MailRow(*rows).MessageId()) ? 1 : 0;
      }
    }
  }

 private:
  static size_t Key(const QString& subject, const QString& addressLines) {
    return qHash(subject + QChar(u'\0') + addressLines);
  }
  // What is edited or waits to be sent is not: outside the dust bin it would be sent.
  static bool IsReturnable(StoredState state) {
    return state.status == kStatusReceived || state.status == kStatusSent;
  }

  // Known is what was imported before, and what came another way and is the same; one that lies in
  // the dust bin where no other is and it can be read. Empty: this import has met or brought it
  // already.
  std::optional<SerialId> Find(const QString& id, const QByteArray& source) {
    const bool isNamed = ids_.contains(id);
    const UnreadableMessage named = ids_.value(id);
    ids_.insert(id, {});
    const bool isInDust = inDust_.contains(named.serialId);
    if (!isNamed || isInDust) {
      const std::optional<SerialId> alike = FindAlike(source);
      if (alike || !isNamed) return alike;
    }
    const bool isAlreadyMet = named.serialId.IsEmpty();
    if (isAlreadyMet || store_.LoadMessageSource(Disk(named.serialId)) == source) {
      return named.serialId;
    }
    if (isInDust) {
      takenIds_.insert(id);
      return std::nullopt;
    }
    counts_.unreadable.append(named);
    return named.serialId;
  }
  std::optional<SerialId> FindAlike(const QByteArray& source) {
    const MessageIndex index = IndexMessage(source, FlagString(), options_);
    SerialIds alike = stored_.values(Key(index.subject, index.addressLines));
    std::stable_partition(alike.begin(), alike.end(),
                          [this](const SerialId& serialId) { return !inDust_.contains(serialId); });
    for (const SerialId& serialId : std::as_const(alike)) {
      const auto stored = store_.LoadMessageSource(Disk(serialId));
      // With the notes of another program, or without the end mark, as an export leaves it out.
      if (stored && (IsSameButForNotes(*stored, source) || *stored == source + kEndMark)) {
        return serialId;
      }
    }
    return std::nullopt;
  }

  void Meet(const SerialId& stored) {
    const bool isInDust = inDust_.contains(stored);
    const bool returns = inDust_.take(stored);
    if (returns) met_.append(stored);
    ++(returns ? counts_.returned : counts_.known);
    if (isInDust && !returns) ++counts_.kept;
  }

  Context& context_;
  MailStore store_;
  SerialId folder_;
  ImportCounts counts_;
  IndexOptions options_;
  GroupSize group_;
  QHash<QString, UnreadableMessage> ids_;  // by identifier
  QSet<QString> brought_;                  // identifiers, by this import
  QMultiHash<size_t, SerialId> stored_;
  QSet<QString> takenIds_;        // under which something lies that cannot be read
  QHash<SerialId, bool> inDust_;  // whether it may be taken out of it
  SerialIds met_;                 // there
};

}  // namespace

void ImportCounts::Add(const ImportCounts& further) {
  imported += further.imported;
  returned += further.returned;
  known += further.known;
  kept += further.kept;
  back.Add(further.back);
  unreadable += further.unreadable;
  if (!further.notice.isEmpty()) notice = further.notice;
}

ImportOutcome ImportMessages(Context& context, const QString& path, const SerialId& folder,
                             const ImportProgress& progress) {
  WorkLock work(context, kImportWork);
  if (!work.Take(kWaitMs)) return {StorageError{StorageError::Kind::Busy, work.HeldWords()}};
  Importer importer(context, folder);
  if (const Result<> read = importer.ReadStored(); !read) {
    return {read.Error().Behind(
        Ui::tr("保存されているメッセージを読み込めないため、取り込みません。"))};
  }
  context.Data.Group().Gather(MailDatabasePath(context));
  Result<> stored;
  bool ended = false;
  qint64 bytes = 0;
  const Result<QString> read = ReadArchive(path, [&](const QByteArray& source) {
    stored = importer.Take(source);
    bytes += source.size();
    ended = stored && progress && !progress(importer.Counts().Read(), bytes);
    return stored && !ended;
  });
  const Result<> written = context.Data.Group().End();
  if (stored) stored = written ? importer.Return() : written;
  if (!stored) {
    importer.CountStored();
    return {stored.Error().Behind(Ui::tr("メッセージを保存できません。")), importer.Counts()};
  }
  if (ended) {
    return {StorageError{StorageError::Kind::Other, Ui::tr("中止しました。")}, importer.Counts()};
  }
  if (!read) return {read.Error(), importer.Counts()};
  ImportOutcome outcome{{}, importer.Counts()};
  outcome.counts.notice = *read;
  return outcome;
}

Result<SerialId> TakeMessageFile(Context& context, const QString& path) {
  QByteArray source;
  const Result<QString> read = ReadArchive(path, [&source](const QByteArray& first) {
    source = first;
    return false;
  });
  if (source.isEmpty()) {
    if (!read) return read.Error();
    return StorageError{StorageError::Kind::Other,
                        Ui::tr("「%1」にメッセージがありません。").arg(path)};
  }
  const QString id = ImportId(source);
  SerialId known;
  if (const OpenedDatabase mail(context, DatabaseKind::Mail); mail) {
    const RecordsetPtr row = MessageRows(context.Data).Named(id);
    if (row != nullptr && !row->Eof()) known = row->Serial();
  }
  if (!known.IsEmpty()) return known;
  Disk message(context.Data.NewSerialID(QStringLiteral("mail_")));
  FillMessage(message, source, id, {kStatusReceived, true});
  const Result<SerialId> stored = MailStore(context).StoreMessage(message, source);
  if (!stored) return stored.Error().Behind(Ui::tr("メッセージを保存できません。"));
  return stored;
}

}  // namespace vorn
