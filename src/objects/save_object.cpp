#include "objects/save_object.h"

#include <algorithm>
#include <tuple>

#include "objects/any_object.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "storage/bags/profile_bag.h"
#include "storage/base/time_text.h"
#include "storage/file_notes.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"
#include "storage/ui.h"

namespace vorn {

namespace {

// Every other stored profile loses its default mark. Should this fail, the object is saved all the
// same: the marks in memory are right, and the next login writes them again.
void ApplyDefaultProfileRule(Context& context, Disk& saved) {
  const auto mark = [&context](Disk& profile) {
    AnyObject::SetDefault(profile, profile.Serial() == context.Session->Serial());
  };
  for (const DiskPtr& object : context.Objects) {
    if (AnyObject(*object).Is(object_type::kProfile)) mark(*object);
  }
  mark(saved);  // which may be a bag of its own, as it comes from a window
  std::ignore =
      context.Data.Execute(QStringLiteral("UPDATE object SET PROPERTY = '×' WHERE SERIALID in "
                                          "(SELECT SERIALID FROM object WHERE NAME = "
                                          "'%1@string' AND PROPERTY = 'profile') AND NAME = "
                                          "'%2@boolean' AND NOT SERIALID = ")
                               .arg(AnyObject::kType, AnyObject::kDefault) +
                           QuoteSql(saved.Serial()));
}

// Another program in the profile may have worked since this one read it. A count that went back
// would hide that a file is older than it (see `CountWork`).
void KeepHighestWorks(DataSession& data, Disk& profile) {
  Disk stored(profile.Serial());
  if (!stored.DatabaseToDisk(data)) return;
  QList<FileNote> notes = FileNotes(profile);
  for (FileNote& note : notes) {
    for (const FileNote& other : FileNotes(stored)) {
      if (other.path == note.path && other.mark == note.mark) {
        note.works = std::max(note.works, other.works);
      }
    }
  }
  LetFileNotes(profile, notes);
}

// The logged-in profile is the session bag too; what only the running program may know stays out
// of the file, the password above all.
bool StoreRows(DataSession& data, Disk& object) {
  if (!AnyObject(object).Is(object_type::kProfile)) return object.DiskToDatabase(data);
  if (!FileNotes(object).isEmpty()) KeepHighestWorks(data, object);
  Disk stored(object.Serial());
  for (qint32 i = 1; i <= object.Size(); ++i) {
    const QString& name = object.NameAt(i);
    if (!ProfileBag::SessionKeys().contains(name, Qt::CaseInsensitive))
      stored.Let(name, object.Get(name));
  }
  return stored.DiskToDatabase(data);
}

}  // namespace

QString NoNameText(const QString& type) {
  return Ui::tr("オブジェクト名が設定されていません。") +
         Ui::tr("%1の名前を入力してください。").arg(TypeCaption(type));
}

Result<> ValidateObject(const DiskCollection& objects, const Disk& object) {
  using Kind = StorageError::Kind;
  const QString name = AnyObject(object).Name();
  if (name.isEmpty()) return StorageError{Kind::Other, NoNameText(AnyObject(object).Type())};
  for (const DiskPtr& other : objects) {
    if (other->Serial() != object.Serial() && AnyObject(*other).Name() == name) {
      return StorageError{
          Kind::Other, Ui::tr("同じオブジェクト名を持つオブジェクトが存在します。") +
                           Ui::tr("（%1「%2」）").arg(TypeCaption(AnyObject(*other).Type()), name)};
    }
  }
  return {};
}

Result<> SaveObject(Context& context, DatabaseKind kind, Disk& object) {
  AnyObject::SetChanged(object, GeneralTimeText(context.Data.Now()));
  const OpenedDatabase opened(context, kind);
  if (!opened) return opened.Error();
  return Transact(context.Data, [&]() -> Result<> {
    // What cannot be read was not loaded either, and is not written over by what stands in its
    // place.
    if (!Disk(object.Serial()).DatabaseToDisk(context.Data)) return ReasonOf(context.Data);
    if (AnyObject(object).Is(object_type::kProfile)) ApplyDefaultProfileRule(context, object);
    return ResultOf(context.Data, StoreRows(context.Data, object));
  });
}

Result<> ChangeObject(Context& context, const SerialId& serialId,
                      const std::function<void(Disk&)>& change) {
  Disk changed(serialId);
  if (const DiskPtr loaded = LoadObject(context, serialId)) {
    for (qint32 i = 1; i <= loaded->Size(); ++i) {
      changed.Let(loaded->NameAt(i), loaded->Get(loaded->NameAt(i)));
    }
  }
  change(changed);
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, changed);
  if (saved) TakeOver(context, changed);
  return saved;
}

void MarkForSaving(Disk& object) {
  AnyObject::SetMarked(object);
}

Result<> SaveMarkedObjects(Context& context) {
  const OpenedDatabase profile(context, DatabaseKind::Profile);
  if (!profile) return profile.Error();
  if (!context.Data.Begin()) return ReasonOf(context.Data);
  bool saved = true;
  for (const DiskPtr& object : context.Objects) {
    // One that fails keeps its stored rows; the others are saved all the same.
    if (AnyObject(*object).IsMarked() && !object->DiskToDatabase(context.Data)) saved = false;
  }
  saved = context.Data.Commit() && saved;
  return ResultOf(context.Data, saved);
}

void ForgetObject(Context& context, const SerialId& serialId) {
  const DiskPtr object = context.Objects.Find(serialId);
  if (object == nullptr) return;
  if (const OpenedDatabase profile(context, DatabaseKind::Profile); profile) {
    std::ignore = object->Delete(context.Data);  // it is tried again by whoever finds it
  }
  context.Objects.Remove(serialId);
}

}  // namespace vorn
