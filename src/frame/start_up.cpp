#include "frame/start_up.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QSysInfo>
#include <tuple>

#include "frame/security_key.h"
#include "objects/profile/lost_files.h"
#include "objects/profile/profile.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/engine/sole_use.h"
#include "storage/files/file_lock.h"
#include "storage/files/private_files.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kComputerNameCharacters = 40;
constexpr qsizetype kIniValueCharacters = 255;
constexpr int kRebuildWaitMs = 10000;

QString WithSeparator(const QString& folder) {
  return folder.endsWith(u'/') || folder.endsWith(QDir::separator()) ? folder : folder + u'/';
}

bool ReadDebugMode(const QString& appFolder) {
  const QSettings ini(appFolder + QStringLiteral("vorn.ini"), QSettings::IniFormat);
  const QString value =
      ini.value(QStringLiteral("infomation/debug"), QStringLiteral("False")).toString();
  return value.left(kIniValueCharacters).toLower() == u"true";
}

// Earlier versions left the mode of files to the user's mask. Only what is known to be the
// program's own is touched: a portable folder holds the program too, and `--data` may name any
// folder. What cannot be changed may be another user's.
void MakeDataPrivate(const Context& context) {
  const QDir folder(context.AppFolder);
  const QStringList own =
      ProfileFolders() + QStringList{QStringLiteral("navi.*"), QStringLiteral("*.lock"),
                                     QStringLiteral("temp"), QStringLiteral("layout"),
                                     QStringLiteral("web")};
  const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
  const QFileInfoList entries = folder.entryInfoList(own, everything);
  const bool hasOthers = folder.entryList(everything).size() > entries.size();
  if (!hasOthers && QFileInfo::exists(context.NaviDatabasePath)) {
    std::ignore = MakePrivate(folder.path());
  }
  for (const QFileInfo& entry : entries) {
    // The browser engine's own folder is private as a whole, and large.
    if (entry.isDir() && entry.fileName() != u"web") {
      MakeTreePrivate(entry.filePath());
    } else {
      std::ignore = MakePrivate(entry.filePath());
    }
  }
}

// A link in the place of the folder for what is opened would lead that, and its removal, elsewhere.
void RemoveLink(const QString& folder) {
  const QFileInfo entry(QDir::cleanPath(folder));
  if (entry.isSymLink() || entry.isJunction()) {
    QFile::remove(entry.filePath()) || QDir().rmdir(entry.filePath());
  }
}

// In a folder that stays open to others, with their files beside ours, what is ours is private; but
// whoever can write there can take ours away and put other files in their place.
void TellOfOtherWriters(Context& context) {
#ifdef Q_OS_UNIX
  if (!(QFileInfo(context.AppFolder).permissions() & (QFile::WriteGroup | QFile::WriteOther)))
    return;
  context.Notices.append(
      Ui::tr("データフォルダ「%1」には、ほかの利用者も書き込めます。ほかの利用者が"
             "書き込めないフォルダに変えてください。")
          .arg(QDir::toNativeSeparators(context.AppFolder)));
#endif
}

Result<> LoadProfiles(Context& context) {
  const Result<> made = CreateDatabase(context, DatabaseKind::Navigator);
  return made ? LoadObjects(context, DatabaseKind::Navigator, context.Objects) : made;
}

// Whether another program has the list open, or a profile; it may have another key, as one of
// another user or with another home folder.
bool IsInUse(const QString& list, const QList<DiskPtr>& profiles) {
  const QDir folder = QFileInfo(list).dir();
  for (const DiskPtr& profile : profiles) {
    const QString path = folder.filePath(profile->SerialID() + QStringLiteral("/profile.lock"));
    const bool isHeld = QFileInfo::exists(path) &&
                        FileLock(path).Take(FileLock::Kind::Exclusive, 0) == FileLock::Result::Held;
    if (isHeld) return true;
  }
  return !SoleUse(list).IsTaken();
}

// Somebody who starts now and then with another home folder leaves one each time.
void DropOldLists(const QString& path) {
  constexpr qsizetype kKept = 10;
  QDir folder = QFileInfo(path).dir();
  const QString mark = QFileInfo(path).fileName() + QStringLiteral(".unreadable-");
  QStringList lists = folder.entryList({mark + u'*'}, QDir::Files, QDir::Name);
  lists.removeIf([](const QString& name) { return name.endsWith(u"-wal"); });
  for (const QString& name : lists.mid(0, qMax(qsizetype{0}, lists.size() - kKept))) {
    folder.remove(name);
    folder.remove(name + QStringLiteral("-wal"));
  }
}

// An unreadable list of profiles holds nothing that the profiles do not know themselves; it is kept
// all the same. A program that has it open would go on writing to it under its new name.
// `unreadable` is why it cannot be read.
Result<> SetListAside(Context& context, const QList<DiskPtr>& profiles,
                      const StorageError& unreadable) {
  const QString path = context.NaviDatabasePath;
  context.Data.CloseFile(path);  // one that is damaged further on was opened
  if (IsInUse(path, profiles)) {
    return StorageError{
        StorageError::Kind::Busy,
        Ui::tr("このデータフォルダを使っているほかのプログラムがあるので、一覧を作り直しません。"
               "そのプログラムを終了するか、それと同じ利用者として（同じホームフォルダで）起動"
               "してください。ファイルは何も変えていません。")};
  }
  const QString kept = path + QStringLiteral(".unreadable-") +
                       QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmsszzz"));
  QFile::rename(path + QStringLiteral("-wal"), kept + QStringLiteral("-wal"));
  QFile::remove(path + QStringLiteral("-shm"));
  if (!QFile::rename(path, kept)) return unreadable;
  DropOldLists(path);
  context.Notices.append(Ui::tr("プロファイル一覧のファイルを読めないため、「%1」という名前で残し"
                                "ました。")
                             .arg(QFileInfo(kept).fileName()));
  return {};
}

Result<> StoreRebuilt(Context& context, const QList<DiskPtr>& profiles) {
  const OpenedDatabase navigator(context, DatabaseKind::Navigator);
  if (!navigator) return navigator.Error();
  const Result<> stored = Transact(context.Data, [&]() -> Result<> {
    for (const DiskPtr& profile : profiles) {
      if (!profile->DiskToDatabase(context.Data)) return ReasonOf(context.Data);
    }
    return {};
  });
  if (!stored) return stored;
  for (const DiskPtr& profile : profiles) context.Objects.Add(profile);
  context.Notices.append(Ui::tr("プロファイル一覧を、フォルダにある%1個のプロファイルから作り"
                                "直しました。名前はログインすると元に戻ります。")
                             .arg(profiles.size()));
  return {};
}

// The list of profiles is lost, unreadable (the user's settings with its key are lost, or they are
// another user's) or empty: with profile folders beside it, it is made anew from them.
Result<> RebuildList(Context& context, UnreadableList choice) {
  FileLock lock(context.AppFolder + QStringLiteral("navi.lock"));
  const FileLock::Result result = lock.Take(FileLock::Kind::Exclusive, kRebuildWaitMs);
  if (result != FileLock::Result::Taken) {
    return StorageError{StorageError::Kind::Other,
                        result == FileLock::Result::Held
                            ? Ui::tr("ほかのプログラムが使用中です。")
                            : Ui::tr("フォルダ「%1」に書き込めません。")
                                  .arg(QDir::toNativeSeparators(context.AppFolder))};
  }
  const QList<DiskPtr> profiles = ProfilesFromFolders(context);
  const bool empty = QFileInfo::exists(context.NaviDatabasePath) &&
                     QFileInfo(context.NaviDatabasePath).size() == 0;
  if (empty && profiles.isEmpty()) {
    QFile::remove(context.NaviDatabasePath);  // of a killed first start
  }
  Result<> loaded = LoadProfiles(context);
  const bool damaged = context.Data.Damage().Files().contains(context.NaviDatabasePath);
  if (!loaded || (damaged && context.Objects.IsEmpty())) {
    using Kind = StorageError::Kind;
    if (loaded) loaded = ReasonOf(context.Data);  // why none of its profiles was read
    const Kind kind = loaded.Error().kind;
    const bool unreadable =
        damaged || kind == Kind::WrongPassword || kind == Kind::Damaged || kind == Kind::Foreign;
    if (!unreadable || profiles.isEmpty()) return loaded;
    if (choice == UnreadableList::Keep) {
      return loaded.Error().Behind(
          Ui::tr("一覧の鍵は利用者の設定にあります。いつもの利用者として（いつものホームフォルダ"
                 "で）実行してください。鍵をなくしたときは、Vornを起動するか --create を付けると、"
                 "一覧を作り直します。"));
    }
    loaded = SetListAside(context, profiles, loaded.Error());
    if (loaded) loaded = LoadProfiles(context);
    if (!loaded) return loaded;
  }
  if (!context.Objects.IsEmpty() || profiles.isEmpty()) return {};
  return StoreRebuilt(context, profiles);
}

}  // namespace

QString ChooseAppFolder(const QString& requested, const QString& executableFolder) {
  if (!requested.isEmpty()) return WithSeparator(QDir::cleanPath(QDir(requested).absolutePath()));
  const QString portable = WithSeparator(executableFolder);
  for (const QString& mark : {QStringLiteral("vorn.ini"), QStringLiteral("navi.mbx")}) {
    if (QFileInfo::exists(portable + mark)) return portable;
  }
  return WithSeparator(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                       QStringLiteral("/vorn"));
}

Result<> StartUp(Context& context, const QString& appFolder, UnreadableList unreadable) {
  context.ComputerName = QSysInfo::machineHostName().left(kComputerNameCharacters);
  context.Session = std::make_shared<Disk>();
  context.AppFolder = WithSeparator(appFolder);
  context.VersionText = QStringLiteral(VORN_VERSION);
  context.DebugMode = ReadDebugMode(context.AppFolder);
  context.NaviDatabasePath = context.AppFolder + QStringLiteral("navi.mbx");
  context.TempFolder = context.AppFolder + QStringLiteral("temp/");
  context.LayoutFolder = context.AppFolder + QStringLiteral("layout/");
  context.SecurityKey = SecurityKey();
  if (context.SecurityKey.isEmpty()) {
    return StorageError{StorageError::Kind::Other,
                        Ui::tr("ユーザー設定を保存できないため、起動できません。")};
  }
  ProfileBag::SetLoggedIn(*context.Session, false);
  if (!MakePrivateFolder(context.AppFolder)) {
    return StorageError{StorageError::Kind::Other,
                        Ui::tr("データフォルダ「%1」を作成できません。")
                            .arg(QDir::toNativeSeparators(context.AppFolder))};
  }
  RemoveLink(context.TempFolder);
  MakeDataPrivate(context);
  TellOfOtherWriters(context);
  const bool listed = QFileInfo(context.NaviDatabasePath).size() > 0 && LoadProfiles(context) &&
                      !context.Objects.IsEmpty();
  if (listed) return {};
  const Result<> rebuilt = RebuildList(context, unreadable);
  if (rebuilt) return rebuilt;
  return StorageError{
      rebuilt.Error().kind,
      Ui::tr("プロファイル一覧のファイル「%1」を開けません。%2")
          .arg(QDir::toNativeSeparators(context.NaviDatabasePath), rebuilt.Error().text)};
}

}  // namespace vorn
