#include "mail/store/mail_store.h"
#include "mail/store/mail_row.h"
#include "mail/store/message_pieces.h"

#include "mail/codec/mime/message_index.h"
#include "mail/store/message_identity.h"
#include "mail/store/message_rows.h"
#include "mail/store/received_rows.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString Where(const Disk& request) {
  return QStringLiteral(" WHERE SERIALID = ") + QuoteSql(request.Serial());
}

QString SelectRow(const Disk& request) {
  return QStringLiteral("SELECT * FROM mail") + Where(request);
}

// What the user did with the message meanwhile, in another window, stays in the row.
QString FlagsValue(const Disk& request) {
  const FlagString flags = MessageBag(request).Flags();
  if (flags.Text().size() < kFlagAttachment) return QuoteSql(flags.Text());
  return QuoteSql(flags.OfMessage().Text()) +
         QStringLiteral(" & SUBSTR(FIELD_FLAG, %1)").arg(kFlagAttachment + 1);
}

}  // namespace

OpenedDatabase MailStore::Open(const Disk& request) {
  const MessageBag message(request);
  return OpenedDatabase(context_, message.Database(), message.File(context_));
}

Result<SerialId> MailStore::StoreMessage(const Disk& request, const QByteArray& source) {
  if (request.Serial().IsEmpty()) return StorageError::Wordless();
  const Result<> stored = Store(request, source, QString());
  if (!stored) return stored.Error();
  return request.Serial();
}

Result<> MailStore::StoreMessages(const std::vector<std::pair<DiskPtr, QByteArray>>& messages) {
  std::vector<MessageIndex> indexes;
  indexes.reserve(messages.size());
  for (const auto& [request, source] : messages) indexes.push_back(Index(*request, source));
  if (messages.empty()) return {};
  const OpenedDatabase opened = Open(*messages.front().first);
  if (!opened) return opened.Error();
  return Transact(context_.Data, [&] {
    bool stored = true;
    for (size_t i = 0; stored && i < messages.size(); ++i) {
      stored = WriteMessage(*messages[i].first, messages[i].second, indexes[i]);
    }
    return ResultOf(context_.Data, stored);
  });
}

Result<> MailStore::StoreSent(const Disk& request, const QByteArray& source) {
  return Store(request, source, QStringLiteral("DELETE FROM send_attempt") + Where(request));
}

MessageIndex MailStore::Index(const Disk& request, const QByteArray& source) {
  const Settings settings(context_);
  IndexOptions options;
  options.textTypes = settings.TextTypes();
  options.hasEndMark = MessageBag(request).Status() != kStatusReceived;
  options.readsReplyTo = settings.Standards().readsReplyTo;
  options.countsShown = settings.Standards().countsShown;
  return IndexMessage(source, MessageBag(request).Flags(), options);
}

// The row and its folders appear together or not at all.
Result<> MailStore::Store(const Disk& request, const QByteArray& source,
                          const QString& statementBefore) {
  const MessageIndex index = Index(request, source);
  const OpenedDatabase opened = Open(request);
  if (!opened) return opened.Error();
  return Transact(context_.Data, [&] {
    const bool stored = (statementBefore.isEmpty() || context_.Data.Execute(statementBefore)) &&
                        WriteMessage(request, source, index);
    return ResultOf(context_.Data, stored);
  });
}

Result<MailStore::Received> MailStore::StoreReceived(const Disk& request,
                                                     const QByteArray& source) {
  const std::optional<qint64> identity = MessageIdentity(source);
  const Result<Taken> taken = StoreUnlessKnown(request, source, identity, false);
  if (!taken) return taken.Error();
  if (taken->received != Received::Alike) return taken->received;
  // Read outside the transaction, which a damaged page would break with all that it gathered. One
  // that cannot be read may be another message.
  if (const Result<> written = context_.Data.Group().FlushForReading(); !written) {
    return written.Error();
  }
  Disk other(taken->alike);
  MessageBag(request).CopyPlace(other);
  const Result<QByteArray> stored = LoadMessageSource(other);
  if (stored && IsSameButForNotes(*stored, source)) return Received::Alike;
  const Result<Taken> beside = StoreUnlessKnown(request, source, identity, true);
  if (!beside) return beside.Error();
  return beside->received;
}

Result<MailStore::Taken> MailStore::StoreUnlessKnown(const Disk& request, const QByteArray& source,
                                                     const std::optional<qint64>& identity,
                                                     bool besideAlike) {
  const MessageIndex index = Index(request, source);
  const OpenedDatabase opened = Open(request);
  if (!opened) return opened.Error();
  if (!context_.Data.BeginGathered()) return ReasonOf(context_.Data);
  // Nobody else writes from here on, so what is not known now stays so.
  ReceivedRows received(context_.Data);
  const Result<bool> has = MessageRows(context_.Data).HasName(MessageBag(request).MessageId());
  const bool known = has.ValueOr(false);
  Result<> done = has ? Result<>() : has.Error();
  SerialId alike;
  if (done && !known && identity && !besideAlike) {
    const Result<SerialId> found = received.Of(*identity);
    if (!found) done = found.Error();
    alike = found.ValueOr(SerialId());
  }
  if (done && !known && alike.IsEmpty()) {
    done = ResultOf(context_.Data, WriteMessage(request, source, index));
    if (done && identity) done = received.Note(*identity, request.Serial());
  }
  if (done) done = ResultOf(context_.Data, context_.Data.Commit());
  if (!done) {
    context_.Data.Rollback();
    return done.Error();
  }
  if (known) return Taken{Received::Known, {}};
  return Taken{alike.IsEmpty() ? Received::Stored : Received::Alike, alike};
}

bool MailStore::WriteMessage(const Disk& request, const QByteArray& source,
                             const MessageIndex& index) {
  DataSession& data = context_.Data;
  const MessageBag message(request);
  if (!data.OpenRecordset(SelectRow(request), CursorKind::Updatable)) return false;
  const RecordsetPtr row = data.Recordset();
  const bool isNew = row->Eof();
  isNew ? row->AddNew() : row->Edit();
  row->SetField(QStringLiteral("SERIALID"), request.SerialID());
  if (isNew) row->SetField(QStringLiteral("FIELD_ID"), message.MessageId());
  row->SetField(QStringLiteral("MAIL"), source);
  row->SetField(QStringLiteral("STATUS"), message.State().Stored());
  row->SetField(QStringLiteral("FIELD_TIMESTAMP"), message.Timestamp(data.Now()));
  row->SetField(QStringLiteral("FIELD_CONTENT"), index.content);
  row->SetField(QStringLiteral("FIELD_SUBJECT"), index.subject);
  row->SetField(QStringLiteral("FIELD_MAILADDRESS"), index.addressLines);
  row->SetField(QStringLiteral("FIELD_FLAG"), index.flags.Text());
  if (!row->Update()) return false;
  // A new message has no folders yet.
  const bool hasFolders = !isNew || !message.Folders().isEmpty();
  return !hasFolders || WriteFolders(request);
}

Result<QByteArray> MailStore::LoadMessageSource(const Disk& request) {
  const OpenedDatabase opened = Open(request);
  return opened ? ReadSource(SelectRow(request)) : opened.Error();
}

Result<QByteArray> MailStore::LoadSourceOfRow(qint64 row) {
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  return opened ? ReadSource(QStringLiteral("SELECT MAIL FROM mail WHERE rowid = %1").arg(row))
                : opened.Error();
}

// Of the one row that the statement selects.
Result<QByteArray> MailStore::ReadSource(const QString& select) {
  if (!context_.Data.OpenRecordset(select, CursorKind::ForwardOnly)) {
    return ReasonOf(context_.Data);
  }
  const RecordsetPtr row = context_.Data.Recordset();
  const bool isThere = !row->Eof();
  const QByteArray source = MailRow(*row).Source().value_or(QByteArray());
  if (row->Failed()) return row->Error();
  if (!isThere) return StorageError{StorageError::Kind::NotFound, {}};
  return source;
}

Result<> MailStore::DeleteMessage(const Disk& request) {
  const OpenedDatabase opened = Open(request);
  if (!opened) return opened.Error();
  return ResultOf(context_.Data,
                  context_.Data.Execute(QStringLiteral("DELETE * FROM mail") + Where(request)));
}

Result<> MailStore::UpdateMessageState(StateMask mask, const Disk& request, bool openDatabase) {
  if (!openDatabase) return ResultOf(context_.Data, WriteState(mask, request));
  const OpenedDatabase opened = Open(request);
  return opened ? ResultOf(context_.Data, WriteState(mask, request)) : opened.Error();
}

bool MailStore::WriteState(StateMask mask, const Disk& request) {
  if (!mask) mask = StateMask(kStateStatus) | kStateFlag | kStateFolders;
  DataSession& data = context_.Data;
  if (mask.testFlag(kStateStatus) &&
      !data.Execute(QStringLiteral("UPDATE mail SET STATUS = ") +
                    QString::number(MessageBag(request).State().Stored()) + Where(request))) {
    return false;
  }
  if (mask.testFlag(kStateFlag) && !data.Execute(QStringLiteral("UPDATE mail SET FIELD_FLAG = ") +
                                                 FlagsValue(request) + Where(request))) {
    return false;
  }
  return !mask.testFlag(kStateFolders) || WriteFolders(request);
}

bool MailStore::WriteFolders(const Disk& request) {
  DataSession& data = context_.Data;
  if (!data.Execute(QStringLiteral("DELETE FROM folder") + Where(request))) return false;
  for (const SerialId& folder : MessageBag(request).Folders()) {
    if (!data.Execute(QStringLiteral("INSERT INTO folder ( SERIALID, FOLDERID ) VALUES(") +
                      QuoteSql(request.Serial()) + u',' + QuoteSql(folder) + u')')) {
      return false;
    }
  }
  return true;
}

Result<> MailStore::UpdateDust(const Disk& request, bool dust) {
  const OpenedDatabase opened = Open(request);
  if (!opened) return opened.Error();
  return ResultOf(context_.Data, context_.Data.Execute(PutIntoDust(dust) + Where(request)));
}

Result<> MailStore::CancelWaiting(const Disk& request) {
  const OpenedDatabase opened = Open(request);
  if (!opened) return opened.Error();
  DataSession& data = context_.Data;
  return Transact(data, [&]() -> Result<> {
    if (!data.OpenRecordset(SelectRow(request), CursorKind::ForwardOnly)) return ReasonOf(data);
    if (MailRow(*data.Recordset()).Status() != kStatusWaiting) {
      return StorageError{StorageError::Kind::NotFound, {}};
    }
    const QString edited = QStringLiteral("UPDATE mail SET STATUS = STATUS / %1 * %2")
                               .arg(kStatusWaiting)
                               .arg(kStatusEdit);
    return ResultOf(data, data.Execute(edited + Where(request)));
  });
}

bool MailStore::IsTextMime(const QString& contentType) {
  return Settings(context_).TextTypes().contains(contentType);
}

}  // namespace vorn
