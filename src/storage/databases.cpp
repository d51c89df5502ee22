#include "storage/databases.h"

#include <QFile>
#include <QFileInfo>

#include "storage/bags/profile_bag.h"
#include "storage/file_notes.h"
#include "storage/keys/file_key.h"
#include "storage/session/new_database.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

struct Location {
  QString path;
  QString password;
};

Location Locate(const Context& context, DatabaseKind kind, const QString& path) {
  const QString password = ProfileBag(*context.Session).Password();
  switch (kind) {
    case DatabaseKind::Navigator:
      return {context.NaviDatabasePath, FileKey::Unguessable(context.SecurityKey)};
    case DatabaseKind::Profile:
      return {PlatformPath(context, ProfileBag(*context.Session).File()), password};
    case DatabaseKind::Mail:
      return {MailDatabasePath(context), password};
    default:
      return {PlatformPath(context, path), password};
  }
}

struct Field {
  const char16_t* table;
  const char16_t* column;
  FieldType type;
  bool required;
  bool indexed;
  int size;
};

constexpr Field kObjectFields[] = {
    {u"object", u"SERIALID", FieldType::Text, true, true, 64},
    {u"object", u"NAME", FieldType::Text, true, true, 64},
    {u"object", u"PROPERTY", FieldType::Memo, false, false, 0},
};

constexpr Field kMailFields[] = {
    {u"folder", u"SERIALID", FieldType::Text, true, true, 0},
    {u"folder", u"FOLDERID", FieldType::Text, true, true, 0},
    {u"mail", u"SERIALID", FieldType::Text, true, true, 0},
    {u"mail", u"MAIL", FieldType::LongBinary, false, false, 0},
    {u"mail", u"STATUS", FieldType::Integer, false, false, 0},
    {u"mail", u"FIELD_ID", FieldType::Memo, false, false, 0},
    {u"mail", u"FIELD_TIMESTAMP", FieldType::DateTime, false, true, 0},
    {u"mail", u"FIELD_CONTENT", FieldType::Memo, false, false, 0},
    {u"mail", u"FIELD_SUBJECT", FieldType::Memo, false, false, 0},
    {u"mail", u"FIELD_MAILADDRESS", FieldType::Memo, false, false, 0},
    {u"mail", u"FIELD_FLAG", FieldType::Memo, false, false, 0},
};

template <size_t N>
bool CreateFields(DataSession& data, const Field (&fields)[N]) {
  for (const Field& field : fields) {
    if (!data.CreateField(QString::fromUtf16(field.table), QString::fromUtf16(field.column),
                          field.type, field.required, field.indexed, field.size)) {
      return false;
    }
  }
  return true;
}

Result<> CreateTables(DataSession& data, DatabaseKind kind) {
  return Transact(data, [&data, kind]() -> Result<> {
    const bool isObjects = kind == DatabaseKind::Navigator || kind == DatabaseKind::Profile;
    const bool created =
        isObjects ? CreateFields(data, kObjectFields) : CreateFields(data, kMailFields);
    if (!created) return ReasonOf(data);
    if (!CompleteSchema(*data.OpenConnection())) return data.OpenConnection()->LastError();
    return {};
  });
}

Result<> CreateAt(Context& context, DatabaseKind kind, const Location& location) {
  if (location.path.isEmpty()) return StorageError::Wordless();
  return CreateDatabaseFile(context.Data, location.path, location.password,
                            [&context, kind] { return CreateTables(context.Data, kind); });
}

// Another program may have made the file at just this moment, hence the second time. Earlier
// versions gave a file its name before its tables: one whose maker died is finished here.
Result<> OpenAt(Context& context, DatabaseKind kind, const Location& location) {
  DataSession& data = context.Data;
  const bool opened = data.Open(location.path, location.password) ||
                      (data.LastError().kind == StorageError::Kind::NotFound &&
                       QFile::exists(location.path) && data.Open(location.path, location.password));
  if (!opened) return ReasonOf(data);
  return data.OpenConnection()->SchemaVersion() == 0 ? CreateTables(data, kind) : Result<>();
}

// Only a missing file is made; whatever else is wrong with one is for the user to know.
Result<> OpenOrCreate(Context& context, DatabaseKind kind, const Location& location) {
  Result<> opened = OpenAt(context, kind, location);
  if (opened) return opened;
  const bool missing = !QFile::exists(location.path);
  if (missing && kind != DatabaseKind::Navigator && IsNoted(context, location.path)) {
    return StorageError{StorageError::Kind::NotFound,
                        Ui::tr("データベースファイル「%1」がありません。")
                            .arg(QFileInfo(location.path).fileName())};
  }
  // Everything of a profile has one password, which has opened its own database.
  if (opened.Error().kind == StorageError::Kind::WrongPassword &&
      (kind == DatabaseKind::Mail || kind == DatabaseKind::MailByPath) &&
      ProfileBag(*context.Session).IsLoggedIn()) {
    return StorageError{
        StorageError::Kind::Damaged,
        Ui::tr("「%1」: ファイルの先頭が壊れているか、このプロファイルのファイルではありません。")
            .arg(QFileInfo(location.path).fileName())};
  }
  if (QFile::exists(location.path)) return opened;
  const Result<> made = CreateAt(context, kind, location);
  return made ? OpenAt(context, kind, location) : made;
}

}  // namespace

QString MailDatabasePath(const Context& context) {
  // The value may list several files, one a line; the first is the one in use.
  return PlatformPath(
      context, ProfileBag(*context.Session).MailFiles().section(QStringLiteral("\r\n"), 0, 0));
}

Result<> CreateDatabase(Context& context, DatabaseKind kind, const QString& path,
                        const QString& password) {
  Location location = Locate(context, kind, path);
  if (kind == DatabaseKind::MailByPath) location.password = password;
  context.Data.Enter(QString());
  const Result<> exists = OpenOrCreate(context, kind, location);
  context.Data.Leave();
  return exists;
}

OpenedDatabase::OpenedDatabase(Context& context, DatabaseKind kind, const QString& path)
    : data_(context.Data) {
  const Location location = Locate(context, kind, path);
  data_.Enter(location.path);
  if (data_.OpenConnection() == nullptr) opened_ = OpenOrCreate(context, kind, location);
}

// With nothing that is open, so that the password is tried.
OpenedDatabase::OpenedDatabase(Context& context, const QString& path, const QString& password)
    : data_(context.Data) {
  data_.Enter(QString());
  opened_ = ResultOf(data_, data_.Open(path, password));
}

OpenedDatabase::~OpenedDatabase() {
  data_.Leave();
}

Result<> OpenDatabase(Context& context, DatabaseKind kind, const QString& path) {
  return OpenOrCreate(context, kind, Locate(context, kind, path));
}

Result<> MakeDatabase(Context& context, DatabaseKind kind, const QString& path,
                      const QString& password) {
  return CreateAt(context, kind, {path, password});
}

Result<> LoadObjects(Context& context, DatabaseKind kind, DiskCollection& objects) {
  const OpenedDatabase opened(context, kind);
  if (!opened) return opened.Error();
  if (!context.Data.OpenRecordset(
          QStringLiteral("SELECT DISTINCT SERIALID FROM object ORDER BY SerialID ASC"),
          CursorKind::ForwardOnly)) {
    return ReasonOf(context.Data);
  }
  const RecordsetPtr serials = context.Data.Recordset();
  for (; !serials->Eof(); serials->MoveNext()) {
    const auto object = std::make_shared<Disk>(serials->Serial());
    if (object->DatabaseToDisk(context.Data)) {
      objects.Add(object);
    } else if (const StorageError reason = ReasonOf(context.Data);
               reason.kind == StorageError::Kind::Busy) {
      return reason;  // another time it may be read: nothing is to be made in its place
    }
  }
  if (serials->Failed()) return serials->Error();
  return {};
}

}  // namespace vorn
