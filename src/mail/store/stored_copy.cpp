#include "mail/store/stored_copy.h"

#include <QtEndian>
#include <algorithm>
#include <optional>

#include "mail/codec/header/header_decoding.h"
#include "mail/codec/header/header_fields.h"
#include "mail/codec/mime/content_index.h"
#include "mail/store/erased_messages.h"
#include "mail/store/mail_row.h"
#include "mail/store/message_identity.h"
#include "mail/store/message_rows.h"
#include "mail/store/received_rows.h"
#include "storage/databases.h"
#include "storage/engine/source_digest.h"
#include "storage/known_damage.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"

namespace vorn {
namespace {

// A message of a name: whether there is one, and its source, which may not be readable.
struct NamedMessage {
  bool isThere = false;
  Result<QByteArray> source;
};

// In the open file.
Result<NamedMessage> FindNamed(Context& context, const QString& messageId) {
  const RecordsetPtr row = MessageRows(context.Data).Named(messageId);
  if (row == nullptr || (row->Eof() && row->Failed())) return ReasonOf(context.Data);
  if (row->Eof()) return NamedMessage{false, StorageError{StorageError::Kind::NotFound, {}}};
  const std::optional<QByteArray> source = MailRow(*row).Source();
  if (row->Failed() || !source) return NamedMessage{true, row->Error()};
  return NamedMessage{true, *source};
}

// The lines of a body but for those that name and make the boundaries of its parts.
QByteArray WithoutBoundaries(QByteArrayView body) {
  QByteArray lines;
  lines.reserve(body.size());
  for (qsizetype at = 0; at < body.size();) {
    const qsizetype found = body.indexOf('\n', at);
    const qsizetype end = found < 0 ? body.size() : found + 1;
    const QByteArrayView line = body.sliced(at, end - at);
    const bool isBoundary =
        line.startsWith("--") || line.toByteArray().toLower().contains("boundary=");
    if (!isBoundary) lines += line;
    at = end;
  }
  return lines;
}

// Whether a header is the stored one but for a field or two, such as are written on the way.
bool HasFewOtherFields(const QByteArray& stored, const QByteArray& source) {
  constexpr qsizetype kFew = 2;
  QByteArrayList fields = FieldsOf(source);
  for (const QByteArray& field : FieldsOf(stored)) fields.removeOne(field);
  return fields.size() <= kFew;
}

// The source of the message of that name in that file, if it reads back as it was stored.
Result<QByteArray> ReadStored(Context& context, const QString& file, const QString& messageId) {
  const OpenedDatabase opened(context, DatabaseKind::MailByPath, file);
  if (!opened) return opened.Error();
  const Result<NamedMessage> found = FindNamed(context, messageId);
  return found ? found->source : found.Error();
}

// A field that is there twice counts twice.
bool HasFieldsOf(QByteArrayList fields, const QByteArrayList& others) {
  return std::all_of(others.begin(), others.end(),
                     [&fields](const QByteArray& field) { return fields.removeOne(field); });
}

// Where many have one subject, as reports of programs have, the first ones are compared.
constexpr int kMostCompared = 100;

// What tells messages roughly apart, so that few are compared.
quint64 KeyOf(const QByteArray& digest) {
  return digest.size() < 8 ? 0 : qFromLittleEndian<quint64>(digest.constData());
}
quint64 SubjectKey(const QString& subject) {
  return KeyOf(SourceDigest(subject.toUtf8()));
}
QString SubjectOf(const QByteArray& message) {
  const QByteArrayView name = "SUBJECT:";
  const QByteArray field = MimeCodec::HeaderField(message, name);
  ReadingCode code;
  const bool isRaw =
      std::any_of(field.begin(), field.end(), [](char c) { return (c & 0x80) != 0; });
  if (isRaw) code.body = MimeCodec::TextCharset(message, MimeCodec::ReadContent(message));
  return MimeCodec::DecodeHeader(field, name.size(), code);
}

// Archives have no names of their own (`ImportId`).
bool IsFromArchive(const QString& messageId) {
  return messageId.startsWith(u"import/");
}

// What a name that its message gave up has got behind it.
QString WithoutFreeMark(const QString& name) {
  const qsizetype mark = name.lastIndexOf(u"#mail_");
  return mark < 0 ? name : name.first(mark);
}

// The same text under the same fields, of which one may have more. A Message-ID proves nothing by
// itself: devices repeat theirs, and a list's copy has that of the direct one.
bool IsSameMessage(const QByteArray& stored, const QByteArray& source) {
  if (stored == source) return true;
  if (BodyOf(stored) != BodyOf(source)) return false;
  const QByteArrayList fields = FieldsOf(stored);
  const QByteArrayList others = FieldsOf(source);
  if (HasFieldsOf(fields, others)) return true;
  // What is stored without a text may be what was left of a message that was torn off.
  return !BodyOf(stored).isEmpty() && HasFieldsOf(others, fields);
}

}  // namespace

Result<> StoredCopyIsWhole(Context& context, const QString& file, const QString& messageId) {
  const Result<QByteArray> stored = ReadStored(context, file, messageId);
  return stored ? Result<>() : stored.Error();
}

bool StoredCopySaysTheSame(Context& context, const QString& file, const QString& messageId,
                           const QByteArray& source) {
  const auto stored = ReadStored(context, file, messageId);
  if (!stored || HasHole(*stored) || HasHole(source)) return false;
  for (const QByteArrayView name : {"MESSAGE-ID:", "DATE:", "FROM:", "SUBJECT:"}) {
    if (MimeCodec::HeaderField(*stored, name) != MimeCodec::HeaderField(source, name)) return false;
  }
  if (BodyOf(*stored).isEmpty() && BodyOf(source).isEmpty())
    return HasFewOtherFields(*stored, source);
  return WithoutBoundaries(BodyOf(*stored)) == WithoutBoundaries(BodyOf(source));
}

bool StoredCopyHasHeader(Context& context, const QString& file, const QString& messageId,
                         const QByteArray& header,
                         const std::function<bool(const QByteArray& stored)>& whole) {
  if (!IsUnique(header)) return false;
  const auto stored = ReadStored(context, file, messageId);
  return stored && whole(*stored) && !HasHole(*stored) &&
         MimeCodec::AllHeaders(*stored) == MimeCodec::AllHeaders(header);
}

// A copy that cannot be read may be of any message.
Result<StoredCopies::Holds> StoredCopies::Compare(const QString& file, const QString& messageId,
                                                  const QByteArray& source, Likeness likeness) {
  // A page that cannot be read takes along the transaction that it is read in.
  if (isDamaged_) {
    const Result<> written = context_.Data.Group().FlushForReading();
    if (!written) return written.Error();
  }
  const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file);
  if (!opened) return opened.Error();
  const Result<NamedMessage> stored = FindNamed(context_, messageId);
  if (!stored) return stored.Error();
  if (!stored->isThere) return Holds::Nothing;
  if (!stored->source) return Holds::Other;
  const QByteArray& bytes = *stored->source;
  const bool mayDiffer = likeness == Likeness::Any || (IsUnique(bytes) && IsUnique(source));
  const bool isSame = likeness == Likeness::ButForNotes ? IsSameButForNotes(bytes, source)
                                                        : IsSameMessage(bytes, source);
  return bytes == source || (mayDiffer && isSame) ? Holds::Same : Holds::Other;
}

void StoredCopies::Begin(const QStringList& files, const QString& scope, Vouches vouches) {
  if (files != files_) ForgetRead();
  files_ = files;
  scope_ = scope;
  vouches_ = std::move(vouches);
  isLoaded_ = false;
  isDamaged_ = std::any_of(files_.begin(), files_.end(), [this](const QString& file) {
    const auto damage = FindDamage(context_, PlatformPath(context_, file));
    return !damage || !damage->parts.isEmpty();
  });
  erased_.reset();
  for (Places* places : {&byDigest_, &bySubject_}) {
    for (Place& place : *places) place.isTaken = false;
  }
}

void StoredCopies::ForgetRead() {
  read_.clear();
  byDigest_.clear();
  bySubject_.clear();
}

// All at once: to look for each one would read the file as often.
Result<> StoredCopies::Load() {
  if (isLoaded_) return {};
  for (qint32 file = 0; file < files_.size(); ++file) {
    const OpenedDatabase opened(context_, DatabaseKind::MailByPath, files_[file]);
    if (!opened) return opened.Error();
    qint64& last = read_[files_[file]];
    const auto take = [&](qint64 row, const QByteArray& digest, const QString& subject) {
      if (const quint64 key = KeyOf(digest)) byDigest_.push_back({key, file, row});
      bySubject_.push_back({SubjectKey(subject), file, row});
      last = qMax(last, row);
    };
    const Result<> read = ReceivedRows(context_.Data).Read(last, take);
    // What lies behind damage is not found, and is stored once more rather than never.
    if (!read && read.Error().kind != StorageError::Kind::Damaged) return read;
  }
  for (Places* places : {&byDigest_, &bySubject_}) {
    std::sort(places->begin(), places->end(),
              [](const Place& a, const Place& b) { return a.key < b.key; });
  }
  isLoaded_ = true;
  return {};
}

// The first one that may be this message. It is asked for by the name that it has by now.
Result<StoredCopies::Hit> StoredCopies::FindElsewhere(Places& places, quint64 key,
                                                      const QByteArray& source) {
  auto place =
      std::lower_bound(places.begin(), places.end(), key,
                       [](const Place& entry, quint64 wanted) { return entry.key < wanted; });
  int compared = 0;
  for (; place != places.end() && place->key == key && compared < kMostCompared; ++place) {
    if (place->isTaken) continue;
    const QString file = files_[place->file];
    const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file);
    if (!opened) return opened.Error();
    const Result<QString> known = MessageRows(context_.Data).NameOf(place->row);
    if (!known) return known.Error();
    place->isTaken = known->startsWith(scope_) && vouches_(*known);
    if (place->isTaken) continue;
    ++compared;
    const Result<Found> found = Claim(file, *known, source);
    if (!found) return found.Error();
    place->isTaken = *found == Found::Moved;
    if (*found != Found::None) return Hit{*found, *known, file};
  }
  return Hit{};
}

// Whether the message of that name is the same one and may be had under another.
Result<StoredCopies::Found> StoredCopies::Claim(const QString& file, const QString& name,
                                                const QByteArray& source) {
  const bool isOfMailbox = name.startsWith(scope_);
  const bool isOfOther = !isOfMailbox && name.contains(u'@') && IsUnique(source);
  if (!isOfMailbox && !isOfOther && !IsFromArchive(name)) return Found::None;
  const Result<Holds> holds =
      Compare(file, name, source, isOfOther ? Likeness::ButForNotes : Likeness::Traced);
  if (!holds) return holds.Error();
  if (*holds != Holds::Same) return Found::None;
  return isOfOther ? Found::Elsewhere : Found::Moved;
}

Result<> StoredCopies::Rename(const QString& file, const QString& from, const QString& value) {
  const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file);
  if (!opened) return opened.Error();
  const bool renamed = context_.Data.Execute(QStringLiteral("UPDATE mail SET FIELD_ID = ") + value +
                                             QStringLiteral(" WHERE FIELD_ID = ") + QuoteSql(from));
  return ResultOf(context_.Data, renamed);
}

Result<> StoredCopies::FreeName(const QString& messageId) {
  Result<> freed;
  for (const QString& file : files_) {
    if (freed) freed = Rename(file, messageId, QStringLiteral("FIELD_ID & '#' & SERIALID"));
  }
  return freed;
}

Result<> StoredCopies::LoadErased() {
  if (erased_) return {};
  QMultiHash<QByteArray, QString> erased;
  for (const QString& file : files_) {
    const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file);
    if (!opened) return opened.Error();
    const auto names = ErasedMessages(context_.Data).ByDigest();
    if (!names) return names.Error();
    erased += *names;
  }
  erased.remove({});
  erased_ = erased;
  return {};
}

// What was erased under another name is noted under this one as well, so that it is known by it.
Result<> StoredCopies::NoteErased(const QString& messageId, const QByteArray& digest) {
  for (const QString& file : files_) {
    const OpenedDatabase opened(context_, DatabaseKind::MailByPath, file);
    if (!opened) return opened.Error();
    const Result<> noted = ErasedMessages(context_.Data).NoteAlso(messageId, digest);
    if (!noted) return noted.Error();
  }
  return {};
}

Result<StoredCopies::Copy> StoredCopies::Find(const QString& messageId, const QByteArray& source,
                                              bool isNamed, Trust trust) {
  bool isOther = false;
  for (const QString& file : isNamed ? files_ : QStringList()) {
    const Result<Holds> holds = Compare(file, messageId, source, Likeness::Any);
    if (!holds) return holds.Error();
    if (*holds == Holds::Same) return Copy{Found::Stored, messageId};
    isOther = isOther || *holds == Holds::Other;
  }
  const QByteArray digest = SourceDigest(source);
  if (const Result<> loaded = Load(); !loaded) return loaded.Error();
  if (const Result<> loaded = LoadErased(); !loaded) return loaded.Error();
  Result<Hit> hit = FindElsewhere(byDigest_, KeyOf(digest), source);
  if (hit && hit->found == Found::None && !bySubject_.empty()) {
    hit = FindElsewhere(bySubject_, SubjectKey(SubjectOf(source)), source);
  }
  if (!hit) return hit.Error();
  if (hit->found == Found::Elsewhere) return Copy{Found::Elsewhere, hit->name};
  const bool isMoved = hit->found == Found::Moved;
  if (isMoved && trust == Trust::Doubtful) return Copy{Found::Elsewhere, hit->name};
  if (isMoved && trust == Trust::Nameless) return Copy{Found::Stored, hit->name};
  if (isOther) {
    if (const Result<> freed = FreeName(messageId); !freed) return freed.Error();
  }
  if (isMoved) {
    const Result<> renamed = Rename(hit->file, hit->name, QuoteSql(messageId));
    if (!renamed) return renamed.Error();
    return Copy{Found::Moved, WithoutFreeMark(hit->name)};
  }
  const bool wasHere = erased_->contains(digest, messageId);
  if (wasHere || (IsUnique(source) && erased_->contains(digest))) {
    if (!wasHere && trust != Trust::Doubtful) {
      if (const Result<> noted = NoteErased(messageId, digest); !noted) return noted.Error();
    }
    return Copy{Found::Erased, QString::fromLatin1(digest.toHex())};
  }
  return Copy{isOther ? Found::Renewed : Found::None, messageId};
}

}  // namespace vorn
