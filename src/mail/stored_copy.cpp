#include "mail/stored_copy.h"

#include <algorithm>
#include <optional>

#include "mail/header_fields.h"
#include "storage/databases.h"
#include "storage/source_digest.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

// The source in the open file; nothing when there is none, and an invalid value when it cannot be
// read.
std::optional<QVariant> StoredSource(Context& context, const QString& messageId, bool* failed) {
  *failed = !context.Data.OpenRecordset(
      QStringLiteral("SELECT * FROM mail WHERE FIELD_ID = ") + QuoteSql(messageId),
      CursorKind::ForwardOnly);
  if (*failed) return std::nullopt;
  const RecordsetPtr row = context.Data.Recordset();
  if (row->Eof()) {
    *failed = row->Failed();
    return std::nullopt;
  }
  const QVariant source = row->Fields(u"MAIL");
  return row->Failed() ? QVariant() : source;
}

// What servers and what lies between put into a header and change there, none of it the sender's.
bool IsServersOwn(const QByteArray& field) {
  static const QByteArrayList names = {"status:",
                                       "x-status:",
                                       "x-keywords:",
                                       "x-uid:",
                                       "x-uidl:",
                                       "x-imap:",
                                       "x-mozilla-status:",
                                       "lines:",
                                       "x-mozilla-status2:",
                                       "content-length:"};
  const QByteArray lower = field.toLower();
  return std::any_of(names.begin(), names.end(),
                     [&lower](const QByteArray& name) { return lower.startsWith(name); });
}

QByteArrayList FieldsOf(const QByteArray& message) {
  QByteArrayList fields = MimeCodec::AllHeaders(message);
  fields.removeIf([](const QByteArray& field) { return IsServersOwn(field); });
  return fields;
}

bool HasFieldsOf(const QByteArrayList& fields, const QByteArrayList& others) {
  return std::all_of(others.begin(), others.end(),
                     [&fields](const QByteArray& field) { return fields.contains(field); });
}

QByteArrayView BodyOf(const QByteArray& message) {
  return QByteArrayView(message).sliced(MimeCodec::HeaderBlockEnd(message)).trimmed();
}

// Tells messages roughly apart, so that few are compared.
QByteArray BodyKey(const QByteArray& message) {
  return SourceDigest(MimeCodec::HeaderField(message, "MESSAGE-ID:").trimmed() + '\n' +
                      BodyOf(message).toByteArray());
}

// The same text under the same fields, of which one may have more. A Message-ID proves nothing by
// itself: devices repeat theirs, and a list's copy has that of the direct one.
bool IsSameMessage(const QByteArray& stored, const QByteArray& source) {
  if (stored == source) return true;
  if (BodyOf(stored) != BodyOf(source)) return false;
  const QByteArrayList fields = FieldsOf(stored);
  const QByteArrayList others = FieldsOf(source);
  return HasFieldsOf(fields, others) || HasFieldsOf(others, fields);
}

}  // namespace

bool StoredCopyIsWhole(Context& context, const QString& file, const QString& messageId) {
  if (!OpenDatabase(context, DatabaseKind::MailByPath, file)) return false;
  bool failed = false;
  const std::optional<QVariant> source = StoredSource(context, messageId, &failed);
  context.Data.Close();
  return source && source->isValid();
}

bool StoredCopyHasHeader(Context& context, const QString& file, const QString& messageId,
                         const QByteArray& header) {
  const QByteArray id = MimeCodec::HeaderField(header, "MESSAGE-ID:");
  const bool isUnique = id.contains('@') && !MimeCodec::HeaderField(header, "RECEIVED:").isEmpty();
  if (!isUnique || !OpenDatabase(context, DatabaseKind::MailByPath, file)) return false;
  bool failed = false;
  const std::optional<QVariant> source = StoredSource(context, messageId, &failed);
  context.Data.Close();
  return source && source->isValid() &&
         MimeCodec::AllHeaders(source->toByteArray()) == MimeCodec::AllHeaders(header);
}

// A copy that cannot be read may be of any message.
StoredCopies::Holds StoredCopies::Compare(const QString& file, const QString& messageId,
                                          const QByteArray& source) {
  if (!OpenDatabase(context_, DatabaseKind::MailByPath, file)) return Holds::Failed;
  bool failed = false;
  const std::optional<QVariant> stored = StoredSource(context_, messageId, &failed);
  context_.Data.Close();
  if (!stored) return failed ? Holds::Failed : Holds::Nothing;
  return stored->isValid() && IsSameMessage(stored->toByteArray(), source) ? Holds::Same
                                                                           : Holds::Other;
}

// All at once: to look for each one would read the file as often.
bool StoredCopies::LoadSources() {
  if (sources_) return true;
  Places places;
  for (const QString& file : files_) {
    if (!OpenDatabase(context_, DatabaseKind::MailByPath, file)) return false;
    const auto sources = context_.Data.SourcesOf(scope_);
    context_.Data.Close();
    if (!sources) return false;
    for (auto source = sources->constBegin(); source != sources->constEnd(); ++source) {
      places.insert(source.key(), {file, *source});
    }
  }
  sources_ = places;
  return true;
}

bool StoredCopies::LoadBodies() {
  if (bodies_) return true;
  bodies_.emplace();
  const bool read = std::all_of(files_.begin(), files_.end(),
                                [this](const QString& file) { return AddBodies(file); });
  if (!read) bodies_.reset();
  return read;
}

bool StoredCopies::AddBodies(const QString& file) {
  if (!OpenDatabase(context_, DatabaseKind::MailByPath, file)) return false;
  const QString end = scope_.chopped(1) + QChar(scope_.back().unicode() + 1);
  const bool read = context_.Data.OpenRecordset(
      QStringLiteral("SELECT SERIALID, MAIL FROM mail WHERE FIELD_ID >= ") + QuoteSql(scope_) +
          QStringLiteral(" AND FIELD_ID < ") + QuoteSql(end),
      CursorKind::ForwardOnly);
  if (read) {
    const RecordsetPtr rows = context_.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) {
      bodies_->insert(BodyKey(rows->Fields(u"MAIL").toByteArray()),
                      {file, rows->Fields(u"SERIALID").toString()});
    }
  }
  context_.Data.Close();
  return read;
}

// The first one whose name nobody vouches for.
std::optional<StoredCopies::Place> StoredCopies::FindElsewhere(const Places& places,
                                                               const QByteArray& key,
                                                               const QByteArray& source,
                                                               QString* name, bool* failed) {
  for (auto [place, end] = places.equal_range(key); place != end; ++place) {
    const Holds holds = CompareName(*place, source, name);
    *failed = *failed || holds == Holds::Failed;
    if (holds == Holds::Same && !vouches_(*name)) return *place;
  }
  return std::nullopt;
}

// Under the name that it has by now.
StoredCopies::Holds StoredCopies::CompareName(const Place& place, const QByteArray& source,
                                              QString* name) {
  if (!OpenDatabase(context_, DatabaseKind::MailByPath, place.file)) return Holds::Failed;
  const bool read = context_.Data.OpenRecordset(
      QStringLiteral("SELECT FIELD_ID FROM mail WHERE SERIALID = ") + QuoteSql(place.serialId),
      CursorKind::ForwardOnly);
  if (read) *name = context_.Data.Recordset()->Fields(u"FIELD_ID").toString();
  context_.Data.Close();
  if (!read) return Holds::Failed;
  return name->isEmpty() ? Holds::Nothing : Compare(place.file, *name, source);
}

bool StoredCopies::Update(const QString& file, const QString& change) {
  if (!OpenDatabase(context_, DatabaseKind::MailByPath, file)) return false;
  const bool updated =
      context_.Data.Execute(QStringLiteral("UPDATE mail SET FIELD_ID = ") + change);
  context_.Data.Close();
  return updated;
}

bool StoredCopies::FreeName(const QString& messageId) {
  return std::all_of(files_.begin(), files_.end(), [&](const QString& file) {
    return Update(
        file, QStringLiteral("FIELD_ID & '#' & SERIALID WHERE FIELD_ID = ") + QuoteSql(messageId));
  });
}

// What was erased under another name is noted under this one as well, so that it is known by it.
bool StoredCopies::IsErased(const QByteArray& digest, const QString& messageId, bool* failed) {
  const QString ofDigest = QStringLiteral("FROM erased WHERE HEX(DIGEST) = '%1' LIMIT 1")
                               .arg(QString::fromLatin1(digest.toHex().toUpper()));
  for (const QString& file : files_) {
    *failed = *failed || !OpenDatabase(context_, DatabaseKind::MailByPath, file);
    if (*failed) return false;
    const bool read = context_.Data.OpenRecordset(QStringLiteral("SELECT FIELD_ID ") + ofDigest,
                                                  CursorKind::ForwardOnly);
    const bool isHere = read && !context_.Data.Recordset()->Eof();
    *failed =
        !read ||
        (isHere && !context_.Data.Execute(QStringLiteral("INSERT OR REPLACE INTO erased (FIELD_ID, "
                                                         "DIGEST) SELECT %1, DIGEST ")
                                              .arg(QuoteSql(messageId)) +
                                          ofDigest));
    context_.Data.Close();
    if (*failed || isHere) return isHere;
  }
  return false;
}

StoredCopies::Found StoredCopies::Find(const QString& messageId, const QByteArray& source,
                                       bool renames, Depth depth, QString* formerName) {
  bool isOther = false;
  for (const QString& file : files_) {
    const Holds holds = Compare(file, messageId, source);
    if (holds == Holds::Failed) return Found::Failed;
    if (holds == Holds::Same) return Found::Stored;
    isOther = isOther || holds == Holds::Other;
  }
  bool failed = false;
  const QByteArray digest = SourceDigest(source);
  if (!LoadSources()) return Found::Failed;
  std::optional<Place> place = FindElsewhere(*sources_, digest, source, formerName, &failed);
  if (depth == Depth::Bodies && !place) {
    if (!LoadBodies()) return Found::Failed;
    place = FindElsewhere(*bodies_, BodyKey(source), source, formerName, &failed);
  }
  if (failed) return Found::Failed;
  if (place && !renames) return Found::Stored;
  if (isOther && !FreeName(messageId)) return Found::Failed;
  if (place) {
    const QString change =
        QuoteSql(messageId) + QStringLiteral(" WHERE SERIALID = ") + QuoteSql(place->serialId);
    return Update(place->file, change) ? Found::Moved : Found::Failed;
  }
  const bool isErased = IsErased(digest, messageId, &failed);
  if (failed) return Found::Failed;
  if (isErased) return Found::Erased;
  return isOther ? Found::Renewed : Found::None;
}

}  // namespace vorn
