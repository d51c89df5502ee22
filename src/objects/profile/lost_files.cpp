#include "objects/profile/lost_files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <algorithm>
#include <optional>
#include <tuple>

#include "objects/any_object.h"
#include "objects/profile/file_age.h"
#include "objects/profile/profile.h"
#include "objects/save_object.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/engine/sole_use.h"
#include "storage/files/damage_note.h"
#include "storage/files/file_replace.h"
#include "storage/files/private_files.h"
#include "storage/keys/code_file.h"
#include "storage/keys/file_key.h"
#include "storage/session/file_check.h"
#include "storage/session/file_counts.h"
#include "storage/session/password_change.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

const QString kDatabases = QStringLiteral("*.mbx");

QString Name(const QString& path) {
  return QFileInfo(path).fileName();
}

// The stored paths of a profile's files, its own database first.
QStringList StoredPaths(const Disk& profile) {
  QStringList paths{ProfileBag(profile).File()};
  paths += (ProfileBag(profile).MailFiles() + kLineBreak + ProfileBag(profile).History())
               .split(kLineBreak, Qt::SkipEmptyParts);
  paths.removeDuplicates();
  return paths;
}

qint64 BytesOf(const QString& path) {
  return QFileInfo(path).size() + QFileInfo(path + QStringLiteral("-wal")).size();
}

// -1 where that cannot be told.
qint64 CountMessages(Context& context, const QString& path) {
  const OpenedDatabase mail(context, DatabaseKind::MailByPath, path);
  return mail ? FileCounts(context.Data).Messages().ValueOr(-1) : -1;
}

// The note of a file as it is now; the old one when the file is not there.
FileNote NoteOf(Context& context, const QString& stored, const FileNote& old) {
  const QString path = PlatformPath(context, stored);
  FileNote note{stored, FileMark(path)};
  if (note.mark.isEmpty()) return old;
  if (note.mark == old.mark) note = old;
  note.salt = FileSaltText(path);
  const bool holdsMail = stored != ProfileBag(*context.Session).File();
  if (holdsMail && context.Data.ConnectionTo(path) != nullptr &&
      (note.messages < 0 || note.bytes != BytesOf(path))) {
    // First, so that what comes in between is not taken for lost.
    note.changes = ChangesOf(context, path);
    note.messages = CountMessages(context, path);
    note.bytes = BytesOf(path);
  }
  return note;
}

bool CopyIsCurrent(Context& context) {
  Disk copy(context.Session->Serial());
  const OpenedDatabase profile(context, DatabaseKind::Profile);
  const bool read = profile && copy.DatabaseToDisk(context.Data);
  const Disk& now = *context.Session;
  return read && AnyObject(copy).Name() == AnyObject(now).Name() &&
         ProfileBag(copy).MailFiles() == ProfileBag(now).MailFiles() &&
         ProfileBag(copy).History() == ProfileBag(now).History() &&
         FileNotes(copy) == FileNotes(now);
}

// Whether another database stands in the place of the one that was noted.
bool IsAnother(const QString& path, const QString& mark) {
  const QString there = FileMark(path);
  return !mark.isEmpty() && !there.isEmpty() && there != mark;
}

// Whether the file itself, as it was before the password changed.
bool IsUnderOtherKey(Context& context, const FileNote& note, const QString& password) {
  const QString path = PlatformPath(context, note.path);
  return !note.mark.isEmpty() && FileMark(path) == note.mark && note.salt != FileSaltText(path) &&
         ResultOf(context.Data, context.Data.TestPassword(path, password)).Error().kind ==
             StorageError::Kind::WrongPassword;
}

const QString kLog = QStringLiteral("-wal");

void RemoveDatabase(const QString& path) {
  for (const QString& part : {QString(), kLog, QStringLiteral("-shm")}) QFile::remove(path + part);
}

// A database with its log. What another program writes to meanwhile would not be whole.
Result<> CopyDatabase(Context& context, const QString& from, const QString& to) {
  context.Data.CloseFile(from);
  const SoleUse alone(from);
  if (!alone.IsTaken()) {
    return StorageError{StorageError::Kind::Busy, Ui::tr("「%1」は使用中です。").arg(Name(from))};
  }
  RemoveDatabase(to);
  const auto copy = [&](const QString& part) {
    return QFile::copy(from + part, to + part) && MakePrivate(to + part) && SyncFile(to + part);
  };
  if (copy({}) && (!QFile::exists(from + kLog) || copy(kLog))) return {};
  RemoveDatabase(to);
  return StorageError{StorageError::Kind::DiskFull,
                      Ui::tr("ファイルを複製できません。ディスクの空き容量を確認してください。")};
}

// What stands in the place of a lost file is kept under another name, with its log.
bool MakeRoom(const QString& path) {
  if (!QFileInfo::exists(path)) return true;
  if (!HasContent(path)) return QFile::remove(path);
  QString aside;
  for (int number = 1; aside.isEmpty() || QFileInfo::exists(aside); ++number) {
    aside = path + QStringLiteral(".other%1").arg(number);
  }
  QFile::remove(path + QStringLiteral("-shm"));
  return (!QFileInfo::exists(path + kLog) || QFile::rename(path + kLog, aside + kLog)) &&
         QFile::rename(path, aside);
}

// What was found out about the file whose place another one takes says nothing of that one.
void ForgetFormer(Context& context, const QString& path) {
  std::ignore = context.Data.Damage().TakeOf(path);
  std::ignore = ForgetDamage(path);  // else a check does
}

QStringList FilesWithMark(const QDir& folder, const QString& mark) {
  QStringList found;
  if (mark.isEmpty()) return found;
  for (const QFileInfo& file : folder.entryInfoList(QDir::Files | QDir::Hidden)) {
    // The engine's own files beside a database are none of ours to open.
    const QString name = file.fileName();
    if (name.endsWith(u"-shm") || name.endsWith(u"-wal") || name.endsWith(u"-journal")) continue;
    if (FileMark(file.filePath()) == mark) found.append(file.filePath());
  }
  return found;
}

// The profile's own database, where it cannot be opened for its damage.
std::optional<LostFile> DamagedOwn(Context& context, const Disk& profile, const QString& password) {
  const QString stored = ProfileBag(profile).File();
  const QString path = PlatformPath(context, stored);
  if (!HasContent(path) || context.Data.TestPassword(path, password) ||
      ReasonOf(context.Data).kind != StorageError::Kind::Damaged) {
    return std::nullopt;
  }
  FileNote note{stored, {}, -1, 0, 0};
  for (const FileNote& known : FileNotes(profile)) {
    if (known.path == stored) note = known;
  }
  QStringList found = FilesWithMark(QFileInfo(path).dir(), note.mark);
  found.removeAll(path);
  return LostFile{path, note, found, true};
}

// The first of the passwords that opens a file of that kind; else why the first one of them does
// not.
Result<QString> OpeningPassword(Context& context, const QString& file, const QStringList& passwords,
                                FileContents contents) {
  StorageError reason;
  for (const QString& password : passwords) {
    Result<> opens;
    {
      const OpenedDatabase opened(context, file, password);
      opens = opened ? RequireContents(context.Data, contents) : Result<>(opened.Error());
    }
    if (!opens && !reason) reason = opens.Error();
    context.Data.CloseFile(file);  // which takes everything out of its log
    if (opens) return password;
    if (reason.kind != StorageError::Kind::WrongPassword) break;
  }
  return reason;
}

// The password was right: it has opened the file. What the engine says of a copy that was only half
// written would be no help.
StorageError NotRekeyed(const QString& file, const QString& place) {
  const bool isFull =
      QStorageInfo(QFileInfo(place).path()).bytesAvailable() < 2 * QFileInfo(file).size();
  return isFull ? StorageError{StorageError::Kind::DiskFull,
                               Ui::tr("ディスクの空き容量が足りないので、「%1」を今のパスワードに"
                                      "合わせられません。")
                                   .arg(Name(file))}
                : StorageError{StorageError::Kind::Damaged,
                               Ui::tr("「%1」は壊れているので、今のパスワードに合わせられません。")
                                   .arg(Name(file))};
}

// A copy of a profile's folder has the code that its files are under.
QStringList CodesBeside(const Context& context, const QString& file) {
  const CodeFile codes(QFileInfo(file).path(), context.Secrets.get());
  QStringList passwords;
  for (const QString& code : QStringList{codes.Code()} + codes.Others()) {
    if (!code.isEmpty()) passwords.append(FileKey::FromCode(code));
  }
  return passwords;
}

}  // namespace

Result<> NoteFiles(Context& context) {
  Disk& profile = *context.Session;
  const QList<FileNote> old = FileNotes(profile);
  QList<FileNote> notes;
  for (const QString& stored : StoredPaths(profile)) {
    const auto known = std::find_if(old.begin(), old.end(),
                                    [&](const FileNote& note) { return note.path == stored; });
    const FileNote note = NoteOf(context, stored, known == old.end() ? FileNote() : *known);
    if (!note.path.isEmpty()) notes.append(note);
  }
  Result<> saved;
  if (notes != old) {
    LetFileNotes(profile, notes);
    saved = SaveObject(context, DatabaseKind::Navigator, profile);
  }
  if (CopyIsCurrent(context)) return saved;
  const Result<> copied = SaveObject(context, DatabaseKind::Profile, profile);
  return saved ? copied : saved;
}

QList<LostFile> LostFiles(const Context& context, const Disk& profile) {
  QList<LostFile> lost;
  const QString own = PlatformPath(context, ProfileBag(profile).File());
  const QDir folder = QFileInfo(own).dir();
  const QStringList used = StoredPaths(profile);
  for (const FileNote& note : FileNotes(profile)) {
    const QString path = PlatformPath(context, note.path);
    if (!used.contains(note.path) || (HasContent(path) && !IsAnother(path, note.mark))) continue;
    lost.append({path, note, FilesWithMark(folder, note.mark)});
  }
  // A profile of an earlier version has no notes. Messages without their profile's database tell
  // that there was one.
  const bool noted =
      std::any_of(lost.begin(), lost.end(), [&](const LostFile& file) { return file.path == own; });
  if (noted || HasContent(own)) return lost;
  const QFileInfoList files = folder.entryInfoList({kDatabases}, QDir::Files);
  const bool hasOthers = std::any_of(files.begin(), files.end(),
                                     [](const QFileInfo& file) { return file.size() > 0; });
  // Another program's first start may have made the profile's database while this one looked.
  if (hasOthers && !HasContent(own))
    lost.prepend({own, {ProfileBag(profile).File(), {}, -1, 0, 0}, {}});
  return lost;
}

bool IsUnderOtherKeyThanNoted(const Context& context, const Disk& profile, const QString& path) {
  const QList<FileNote> notes = FileNotes(profile);
  return std::any_of(notes.begin(), notes.end(), [&](const FileNote& note) {
    return PlatformPath(context, note.path) == path && !note.salt.isEmpty() &&
           note.salt != FileSaltText(path);
  });
}

QList<LostFile> LostFiles(Context& context, const Disk& profile, const QString& password) {
  QList<LostFile> lost = LostFiles(context, profile);
  const QStringList used = StoredPaths(profile);
  for (const FileNote& note : FileNotes(profile)) {
    if (!used.contains(note.path) || !IsUnderOtherKey(context, note, password)) continue;
    const QString path = PlatformPath(context, note.path);
    lost.append({path, note, {path}});
  }
  const auto own = DamagedOwn(context, profile, password);
  if (own && std::none_of(lost.begin(), lost.end(),
                          [&own](const LostFile& file) { return file.path == own->path; })) {
    lost.append(*own);
  }
  return lost;
}

QString LostFilesText(const QList<LostFile>& lost) {
  QStringList lines;
  for (const LostFile& file : lost) {
    const QString held =
        file.note.messages < 0 ? QString() : Ui::tr("（メッセージ%1通）").arg(file.note.messages);
    QString sentence = Ui::tr("ファイル「%1」%2がありません。");
    if (file.found.contains(file.path)) {
      sentence = Ui::tr(
          "ファイル「%1」%2の場所にあるのは、パスワードが変わる前の古い複製です。つなぎ直すと、今の"
          "パスワードに合わせた複製に替わり、このファイルは別の名前で残ります。");
    } else if (file.isDamaged) {
      sentence = Ui::tr(
          "ファイル「%1」%2は、途中で切れているか、壊れていて開けません。"
          "複製があればつなぎ直せます。新しい空のファイルを作ると、メッセージはそのまま"
          "残りますが、アカウントやフォルダは作り直しになります。"
          "壊れたファイルは別の名前で残ります。");
    } else if (HasContent(file.path)) {
      sentence = Ui::tr(
          "ファイル「%1」%2の場所にあるのは、別のデータベースか、先頭の壊れたファイルです。");
    } else if (QFileInfo::exists(file.path)) {
      sentence = Ui::tr("ファイル「%1」%2が空になっています。");
    }
    lines.append(sentence.arg(QDir::toNativeSeparators(file.path), held));
    for (const QString& found : file.found) {
      if (found != file.path) lines.append(Ui::tr("「%1」がそのファイルです。").arg(Name(found)));
    }
  }
  if (lost.isEmpty()) return {};
  QStringList names;
  const QDir folder = QFileInfo(lost.first().path).dir();
  for (const QFileInfo& file : folder.entryInfoList({QStringLiteral("*.mbx*")}, QDir::Files)) {
    if (file.size() > 0) names.append(file.fileName());
  }
  lines.append(names.isEmpty()
                   ? Ui::tr("フォルダにはほかのデータベースがありません。")
                   : Ui::tr("フォルダにあるファイル: %1").arg(names.join(Ui::tr("、"))));
  return lines.join(u'\n');
}

Result<QString> ReconnectFile(Context& context, const LostFile& lost, const QString& file,
                              const QString& password, const QStringList& former) {
  using Kind = StorageError::Kind;
  const FileContents contents =
      Name(lost.path) == u"profile.mbx" ? FileContents::Objects : FileContents::Messages;
  const QString mark = FileMark(file);
  if (mark.isEmpty() || (!lost.note.mark.isEmpty() && mark != lost.note.mark)) {
    return StorageError{Kind::Foreign,
                        Ui::tr("「%1」は、なくなったファイルではありません。").arg(Name(file))};
  }
  const QString ready =
      lost.path + QStringLiteral(".new-%1").arg(QCoreApplication::applicationPid());
  const Result<> copied = CopyDatabase(context, file, ready);
  if (!copied) return copied.Error();
  Result<QString> opening = OpeningPassword(
      context, ready, QStringList{password} + former + CodesBeside(context, file), contents);
  bool isReady = static_cast<bool>(opening);
  StorageError reason{Kind::Other, Ui::tr("「%1」を元に戻せません。").arg(Name(lost.path))};
  if (!isReady) {
    reason = opening.Error();
    reason.text.replace(Name(ready), Name(file));
  }
  if (isReady && *opening != password) {
    PasswordChange change(context.Data, ready + QStringLiteral(".decided"), {ready});
    isReady = change.Run(*opening, password).outcome == PasswordChange::Outcome::Changed;
    if (!isReady) reason = NotRekeyed(file, lost.path);
    context.Data.CloseFile(ready);
  }
  context.Data.CloseFile(lost.path);
  const bool isPlaced =
      isReady && MakeRoom(lost.path) && PlaceNewFile(ready, lost.path) == Placing::Done;
  if (isPlaced) {
    ForgetFormer(context, lost.path);
    return opening;
  }
  RemoveDatabase(ready);
  return reason;
}

Result<> ReplaceLostFile(Context& context, Disk& profile, const LostFile& lost,
                         const QString& password) {
  context.Data.CloseFile(lost.path);
  if (!MakeRoom(lost.path)) {
    return StorageError{StorageError::Kind::Other,
                        Ui::tr("「%1」を元に戻せません。").arg(Name(lost.path))};
  }
  const bool isOwn = lost.note.path == ProfileBag(profile).File();
  const Result<> made = MakeDatabase(context, isOwn ? DatabaseKind::Profile : DatabaseKind::Mail,
                                     lost.path, password);
  if (!made) return made;
  ForgetFormer(context, lost.path);
  QList<FileNote> notes = FileNotes(profile);
  notes.removeIf([&](const FileNote& note) { return note.path == lost.note.path; });
  notes.append({lost.note.path, FileMark(lost.path), isOwn ? -1 : 0});
  LetFileNotes(profile, notes);
  return {};
}

void RestoreProfile(Context& context, Disk& profile, const QString& password) {
  if (!ProfileBag(profile).IsRebuilt()) return;
  Disk copy(profile.Serial());
  const QString path = PlatformPath(context, ProfileBag(profile).File());
  {
    const OpenedDatabase file(context, path, password);
    if (!file || !copy.DatabaseToDisk(context.Data)) return;
  }
  for (qint32 i = 1; i <= copy.Size(); ++i) profile.Let(copy.NameAt(i), copy.Get(copy.NameAt(i)));
  ProfileBag::ForgetRebuilt(profile);
}

QList<DiskPtr> ProfilesFromFolders(const Context& context) {
  QList<DiskPtr> profiles;
  const QDir data(context.AppFolder);
  for (const QString& serial : data.entryList(ProfileFolders(), QDir::Dirs)) {
    QFileInfoList files =
        QDir(data.filePath(serial)).entryInfoList({kDatabases}, QDir::Files, QDir::Size);
    files.removeIf([](const QFileInfo& file) { return file.size() == 0; });
    if (files.isEmpty()) continue;
    const QString folder = QStringLiteral("/current/") + serial + u'\\';
    QStringList mail;  // the largest first, which is the best guess
    for (const QFileInfo& file : files) {
      if (file.fileName() != u"profile.mbx") mail.append(folder + file.fileName());
    }
    if (mail.isEmpty()) mail.append(folder + QStringLiteral("mail.mbx"));
    auto profile = NewProfile(SerialId(serial), Ui::tr("プロファイル%1").arg(profiles.size() + 1),
                              mail.join(kLineBreak));
    ProfileBag::SetMailFiles(*profile, mail.first());
    ProfileBag::SetRebuilt(*profile);
    profiles.append(profile);
  }
  return profiles;
}

}  // namespace vorn
