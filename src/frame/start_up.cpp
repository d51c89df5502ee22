#include "frame/start_up.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QSysInfo>

#include "frame/security_key.h"
#include "storage/databases.h"
#include "storage/private_files.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kComputerNameCharacters = 40;
constexpr qsizetype kIniValueCharacters = 255;

QString WithSeparator(const QString& folder) {
  return folder.endsWith(u'/') || folder.endsWith(QDir::separator()) ? folder : folder + u'/';
}

bool ReadDebugMode(const QString& appFolder) {
  const QSettings ini(appFolder + QStringLiteral("vorn.ini"), QSettings::IniFormat);
  const QString value =
      ini.value(QStringLiteral("infomation/debug"), QStringLiteral("False")).toString();
  return value.left(kIniValueCharacters).toLower() == u"true";
}

// An earlier version that was killed as it made its first file left an empty one.
void RemoveEmptyNavigator(const Context& context) {
  const QFileInfo file(context.NaviDatabasePath);
  const QDir folder(context.AppFolder);
  if (!file.exists() || file.size() > 0) return;
  if (folder.entryList({QStringLiteral("_profile*")}, QDir::Dirs).isEmpty()) {
    QFile::remove(file.filePath());
  }
}

// Earlier versions left the mode of files to the user's mask. Only what is known to be the
// program's own is touched: a portable folder holds the program too, and `--data` may name any
// folder.
void MakeDataPrivate(const Context& context) {
  const QDir folder(context.AppFolder);
  const QStringList own{QStringLiteral("navi.*"),    QStringLiteral("*.lock"),
                        QStringLiteral("_profile*"), QStringLiteral("temp"),
                        QStringLiteral("layout"),    QStringLiteral("web")};
  const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
  const QFileInfoList entries = folder.entryInfoList(own, everything);
  const bool hasOthers = folder.entryList(everything).size() > entries.size();
  if (!hasOthers && QFileInfo::exists(context.NaviDatabasePath)) MakePrivate(folder.path());
  for (const QFileInfo& entry : entries) {
    // The browser engine's own folder is private as a whole, and large.
    if (entry.isDir() && entry.fileName() != u"web") {
      MakeTreePrivate(entry.filePath());
    } else {
      MakePrivate(entry.filePath());
    }
  }
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

bool StartUp(Context& context, const QString& appFolder, QString* error) {
  context.ComputerName = QSysInfo::machineHostName().left(kComputerNameCharacters);
  context.Session = std::make_shared<Disk>();
  context.AppFolder = WithSeparator(appFolder);
  context.VersionText = QStringLiteral(VORN_VERSION);
  context.DebugMode = ReadDebugMode(context.AppFolder);
  context.NaviDatabasePath = context.AppFolder + QStringLiteral("navi.mbx");
  context.TempFolder = context.AppFolder + QStringLiteral("temp/");
  context.LayoutFolder = context.AppFolder + QStringLiteral("layout/");
  context.SecurityKey = SecurityKey(context.Data);
  if (context.SecurityKey.isEmpty()) {
    *error = Ui::tr("ユーザー設定を保存できないため、起動できません。");
    return false;
  }
  context.Session->Let(QStringLiteral("login"), false);
  if (!MakePrivateFolder(context.AppFolder)) {
    *error = Ui::tr("データフォルダ「%1」を作成できません。")
                 .arg(QDir::toNativeSeparators(context.AppFolder));
    return false;
  }
  MakeDataPrivate(context);
  RemoveEmptyNavigator(context);
  if (!CreateDatabase(context, DatabaseKind::Navigator) ||
      !LoadObjects(context, DatabaseKind::Navigator, context.Objects)) {
    *error =
        Ui::tr("プロファイル一覧のファイル「%1」を開けません。%2")
            .arg(QDir::toNativeSeparators(context.NaviDatabasePath), context.Data.LastError().text);
    return false;
  }
  return true;
}

}  // namespace vorn
